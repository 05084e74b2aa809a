#include "servercheck/documentservertester.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QScopedValueRollback>

#include <memory>

#include "servercheck/testrequest.h"
#include "servercheck/unpacker.h"

namespace OfficeAssiant {

namespace {

/// Stops a redirect circle, which would keep the page waiting until the application ends.
constexpr int mostRedirects = 200;
/// An answer may be a whole document, or endless; the rest is discarded. As text, in base64 and in
/// JSON, all at once, it takes up to 30 times this.
constexpr int longestBody = 2 * 1024 * 1024;
/// How much Qt reads ahead.
constexpr int readAheadSize = 256 * 1024;
/// What Qt asks for by itself. It then also unpacks the answer, however large that becomes.
constexpr char encodingHeader[] = "Accept-Encoding";
constexpr char knownEncodings[] = "gzip, deflate";

/// Each test that waits inside another one costs a thread, connections and stack. A page that has
/// gone wild must not exhaust the host.
constexpr int mostWaitingTests = 64;

constexpr char noAnswer[] = "0:";

int waitingTests = 0;

struct ServerAnswer
{
    bool isError = false;
    /// The application ended before the answer was complete.
    bool isBrokenOff = false;
    int httpStatus = 0;
    QByteArray body;
    /// Where the server redirects the request to; invalid if it does not.
    QUrl redirectTarget;
};

/// A pipe, a device or nothing at all: opening or reading it may block forever, and a server may
/// redirect to it.
bool isLocalButNoFile(const QUrl &url)
{
    return url.isLocalFile() && !QFileInfo(url.toLocalFile()).isFile();
}

/// Whether an answer is to be unpacked: not if the user asked for an encoding.
bool isUnpacked(const TestRequest &test)
{
    return test.request.rawHeader(encodingHeader).isEmpty();
}

std::unique_ptr<QNetworkReply> send(QNetworkAccessManager &manager, const TestRequest &test)
{
    QNetworkRequest request = test.request;
    // Qt 6 would do otherwise by itself.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    if (isUnpacked(test))
        request.setRawHeader(encodingHeader, knownEncodings);
    if (test.kind == RequestKind::Get)
        manager.setCookieJar(nullptr);
    std::unique_ptr<QNetworkReply> reply(
        test.kind == RequestKind::Get ? manager.get(request) : manager.post(request, test.body));
    reply->setReadBufferSize(readAheadSize);
    return reply;
}

/// Collects the beginning of an answer as it arrives.
class BodyReader
{
public:
    BodyReader(QNetworkReply &reply, bool isUnpacked) : m_reply(reply), m_isUnpacked(isUnpacked) {}

    /// False if what arrived is corrupt.
    bool read(QByteArray &body)
    {
        while (m_reply.bytesAvailable() > 0 && body.size() < longestBody) {
            const QByteArray piece =
                m_reply.read(qMin<qint64>(m_reply.bytesAvailable(), longestBody - body.size()));
            if (!m_isUnpacked || !Unpacker::knows(m_reply.rawHeader("Content-Encoding")))
                body += piece;
            else if (!m_unpacker.unpack(piece, body, longestBody))
                return false;
        }
        return true;
    }

private:
    QNetworkReply &m_reply;
    bool m_isUnpacked;
    Unpacker m_unpacker;
};

ServerAnswer waitForAnswer(QNetworkReply &reply, bool isUnpacked)
{
    ServerAnswer answer;
    BodyReader reader(reply, isUnpacked);
    bool isCorrupt = false;
    // The loop ends with the application.
    QEventLoop loop;
    QObject::connect(&reply, &QNetworkReply::readyRead, &loop, [&] {
        isCorrupt = isCorrupt || !reader.read(answer.body);
        reply.skip(reply.bytesAvailable());
        if (isCorrupt)
            loop.quit();
    });
    QObject::connect(&reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    if (!reply.isFinished()) {
        // A nested loop does not handle earlier posted events until something wakes it.
        loop.wakeUp();
        loop.exec();
    }
    answer.isBrokenOff = !reply.isFinished() && !isCorrupt;
    if (!reply.isFinished())
        reply.abort();
    else
        isCorrupt = isCorrupt || !reader.read(answer.body);
    answer.isError = isCorrupt || reply.error() != QNetworkReply::NoError;
    answer.httpStatus = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    answer.redirectTarget = reply.attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    return answer;
}

} // namespace

std::optional<QString> testDocumentServer(const ServerTest &test)
{
    if (waitingTests >= mostWaitingTests)
        return QLatin1String(noAnswer);
    const QScopedValueRollback<int> counted(waitingTests, waitingTests + 1);
    QNetworkAccessManager manager;
    QUrl url(test.url);
    ServerAnswer answer;
    for (int redirects = 0; redirects <= mostRedirects; ++redirects) {
        if (isLocalButNoFile(url))
            return QLatin1String(noAnswer);
        const TestRequest request = makeTestRequest(test, url);
        answer = waitForAnswer(*send(manager, request), isUnpacked(request));
        if (answer.isBrokenOff || !answer.redirectTarget.isValid())
            break;
        // Like the suite, does not resolve relative targets: they lead nowhere.
        url = answer.redirectTarget;
    }
    const bool isCircle = !answer.isBrokenOff && answer.redirectTarget.isValid();
    if (!answer.isError && !isCircle)
        return std::nullopt;
    return QString::number(answer.httpStatus) + QLatin1Char(':') +
           QString::fromUtf8(answer.body.constData(), answer.body.size());
}

} // namespace OfficeAssiant
