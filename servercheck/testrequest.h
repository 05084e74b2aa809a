#pragma once

#include <QByteArray>
#include <QNetworkRequest>
#include <QUrl>

#include "servercheck/servertest.h"

namespace OfficeAssiant {

enum class RequestKind {
    /// For functions that open a document; without cookies.
    Get,
    /// For save functions that send the bare document.
    PlainPost,
    /// For save functions that send the document as form data.
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

/// Builds the request of @p test to @p url. Does not verify certificates: users' document servers
/// often have one that this machine does not know.
TestRequest makeTestRequest(const ServerTest &test, const QUrl &url);

} // namespace OfficeAssiant
