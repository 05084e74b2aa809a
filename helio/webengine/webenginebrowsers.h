#pragma once

#include <memory>

#include "helio/webengine/pagedirectory.h"
#include "helio/webengine/pagesurroundings.h"
#include "host/kheliobrowser.h"

class QWebEngineProfile;

namespace helio {

class RequestGuard;

/// Makes the browsers of the window and keeps what they share. Outlives them all.
class WebEngineBrowsers
{
public:
    /// Installs itself as the maker behind CreateHelioBrowserWidget(). What pages remember is kept
    /// in @p storageDirectory.
    WebEngineBrowsers(const PageDirectory &directory, const PageSurroundings &surroundings,
                      const QString &storageDirectory);
    ~WebEngineBrowsers();

private:
    KHelioBrowserWidgetBase *make(QWidget *owner, KxWebViewCefJsApiFlag flag);

    PageDirectory m_directory;
    PageSurroundings m_surroundings;
    std::unique_ptr<RequestGuard> m_guard;
    std::unique_ptr<QWebEngineProfile> m_profile;
};

} // namespace helio
