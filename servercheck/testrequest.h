#pragma once

#include <QByteArray>
#include <QNetworkRequest>
#include <QUrl>

#include "servercheck/servertest.h"

namespace OfficeAssiant {

enum class RequestKind {
    /// For a function that opens a document; without cookies.
    Get,
    /// For a save function that sends the bare document.
    PlainPost,
    /// For a save function that sends the document as form data.
    MultipartPost
};

/// A request shaped as the suite would send it.
struct TestRequest
{
    RequestKind kind;
    QNetworkRequest request;
    /// Empty for Get.
    QByteArray body;
};

/// The kind of request that the suite sends for an interface function.
RequestKind requestKind(const QString &functionName);

/// Builds the request of @p test to @p url. Certificates are not checked: the document servers
/// that users connect to often have none that this machine knows.
TestRequest makeTestRequest(const ServerTest &test, const QUrl &url);

} // namespace OfficeAssiant
