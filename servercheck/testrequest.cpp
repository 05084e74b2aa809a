#include "servercheck/testrequest.h"

#include <QCryptographicHash>
#include <QSslConfiguration>
#include <QStringList>

#include "servercheck/formdata.h"

namespace OfficeAssiant {

namespace {

constexpr char testContent[] = "test Data";
constexpr char digestHeader[] = "md5sum";
constexpr char fileNameHeader[] = "filename";
constexpr char plainFileName[] = "test.txt";
constexpr char plainContentType[] = "application/octet-stream";
constexpr char secureScheme[] = "https";

bool isSaveFunction(const QString &name)
{
    return name.contains(QLatin1String("saveURL")) ||
           name.contains(QLatin1String("SaveDocumentToServer"));
}

bool isFormDataFunction(const QString &name)
{
    static const QStringList names{
        QStringLiteral("saveURL_FormData"),         QStringLiteral("saveURL_s_FormData"),
        QStringLiteral("saveURL_GetData_FormData"), QStringLiteral("saveURL_CustomParam_FormData"),
        QStringLiteral("OpenDocumentFromServer"),   QStringLiteral("SaveDocumentToServer")};
    return names.contains(name);
}

void acceptAnyCertificate(QNetworkRequest &request)
{
    QSslConfiguration configuration = request.sslConfiguration();
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    configuration.setProtocol(QSsl::AnyProtocol);
    request.setSslConfiguration(configuration);
}

void setDigest(QNetworkRequest &request)
{
    request.setRawHeader(digestHeader,
                         QCryptographicHash::hash(testContent, QCryptographicHash::Md5).toHex());
}

/// Whether a header's text would end the header, and begin another one or a second request.
bool hasLineEnd(const QString &text)
{
    return text.contains(QLatin1Char('\r')) || text.contains(QLatin1Char('\n'));
}

void setHeaders(QNetworkRequest &request, const QString &headerList)
{
    const auto headers = parseNameValueList(headerList);
    for (const auto &header : headers) {
        if (!hasLineEnd(header.first) && !hasLineEnd(header.second))
            request.setRawHeader(header.first.toUtf8(), header.second.toUtf8());
    }
}

} // namespace

RequestKind requestKind(const QString &functionName)
{
    if (!isSaveFunction(functionName))
        return RequestKind::Get;
    return isFormDataFunction(functionName) ? RequestKind::MultipartPost : RequestKind::PlainPost;
}

TestRequest makeTestRequest(const ServerTest &test, const QUrl &url)
{
    TestRequest made{requestKind(test.functionName), QNetworkRequest(url), QByteArray()};
    QNetworkRequest &request = made.request;
    if (url.scheme().compare(QLatin1String(secureScheme), Qt::CaseInsensitive) == 0)
        acceptAnyCertificate(request);

    // The last setting wins: the user's headers override file name and digest, but not type and
    // length of a multipart body, without which it could not be read.
    switch (made.kind) {
    case RequestKind::Get:
        setHeaders(request, test.headerList);
        break;
    case RequestKind::PlainPost:
        made.body = testContent;
        request.setHeader(QNetworkRequest::ContentTypeHeader, QLatin1String(plainContentType));
        request.setRawHeader(fileNameHeader, plainFileName);
        setDigest(request);
        setHeaders(request, test.headerList);
        break;
    case RequestKind::MultipartPost:
        made.body = formDataBody(formFields(test.formFieldList), testContent);
        setDigest(request);
        setHeaders(request, test.headerList);
        request.setHeader(QNetworkRequest::ContentTypeHeader, formDataContentType());
        request.setHeader(QNetworkRequest::ContentLengthHeader, made.body.size());
        break;
    }
    return made;
}

} // namespace OfficeAssiant
