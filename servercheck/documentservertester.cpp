#include "servercheck/documentservertester.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QScopedValueRollback>

#include <memory>

#include "servercheck/testrequest.h"

namespace OfficeAssiant {

namespace {

/// Stops a redirect circle, which would keep the page waiting until the application ends.
constexpr int mostRedirects = 200;
/// An answer may be a whole document, or endless; the rest is discarded.
constexpr int longestBody = 64 * 1024 * 1024;

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

std::unique_ptr<QNetworkReply> send(QNetworkAccessManager &manager, const TestRequest &test)
{
    if (test.kind != RequestKind::Get)
        return std::unique_ptr<QNetworkReply>(manager.post(test.request, test.body));
    manager.setCookieJar(nullptr);
    return std::unique_ptr<QNetworkReply>(manager.get(test.request));
}

ServerAnswer waitForAnswer(QNetworkReply &reply)
{
    ServerAnswer answer;
    const auto read = [&reply, &answer] {
        const qint64 room = longestBody - answer.body.size();
        answer.body += reply.read(qMin(reply.bytesAvailable(), room));
    };
    // The loop ends with the application.
    QEventLoop loop;
    QObject::connect(&reply, &QNetworkReply::readyRead, &loop, [&reply, read] {
        read();
        reply.skip(reply.bytesAvailable());
    });
    QObject::connect(&reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    if (!reply.isFinished()) {
        // A nested loop does not handle earlier posted events until something wakes it.
        loop.wakeUp();
        loop.exec();
    }
    answer.isBrokenOff = !reply.isFinished();
    if (answer.isBrokenOff)
        reply.abort();
    else
        read();
    answer.isError = reply.error() != QNetworkReply::NoError;
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
        answer = waitForAnswer(*send(manager, makeTestRequest(test, url)));
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
