#pragma once

#include <QWebEngineUrlRequestInterceptor>

#include "helio/webengine/pagedirectory.h"

namespace helio {

/// Blocks every request of a page for anything outside the page directory, remote or local.
class RequestGuard : public QWebEngineUrlRequestInterceptor
{
    Q_OBJECT

public:
    explicit RequestGuard(const PageDirectory &directory, QObject *parent = nullptr);

    void interceptRequest(QWebEngineUrlRequestInfo &info) override;

private:
    PageDirectory m_directory;
};

} // namespace helio
