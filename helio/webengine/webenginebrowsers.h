#pragma once

#include <memory>

#include "helio/webengine/pagedirectory.h"
#include "helio/webengine/pagesurroundings.h"
#include "helio/webengine/wire/pageoperations.h"
#include "host/kheliobrowser.h"

class QWebEngineProfile;

namespace helio {

class RequestGuard;

/// Makes the browsers of the windows and owns what they share. Must outlive them.
class WebEngineBrowsers
{
public:
    /// Installs itself as the maker that CreateHelioBrowserWidget() calls. The pages' local storage
    /// is kept in @p storageDirectory. They are offered @p helpers, which must outlive them, and
    /// @p operations.
    WebEngineBrowsers(const PageDirectory &directory, const PageSurroundings &surroundings,
                      const QString &storageDirectory, const PageHelpers &helpers,
                      PageOperations operations);
    ~WebEngineBrowsers();

private:
    KHelioBrowserWidgetBase *make(QWidget *owner, KxWebViewCefJsApiFlag flag);

    PageDirectory m_directory;
    PageSurroundings m_surroundings;
    PageHelpers m_helpers;
    PageOperations m_operations;
    std::unique_ptr<RequestGuard> m_guard;
    std::unique_ptr<QWebEngineProfile> m_profile;
};

} // namespace helio
