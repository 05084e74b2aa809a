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

/// No honest server sends anybody around that often. One that redirects in a circle would keep
/// the page waiting until the application ends.
constexpr int mostRedirects = 200;
/// An answer may be a whole document, or have no end; what is beyond this is thrown away.
constexpr int longestBody = 64 * 1024 * 1024;

/// Each test that waits inside another one has a thread, connections and a stretch of the stack;
/// no page waits for that many, and one that is gone wild must not use up the host's.
constexpr int mostWaitingTests = 64;

constexpr char noAnswer[] = "0:";

int waitingTests = 0;

struct ServerAnswer
{
    bool isError = false;
    /// The application ends before the answer is complete.
    bool isBrokenOff = false;
    int httpStatus = 0;
    QByteArray body;
    /// Where the server wants the request sent instead; not valid when it does not.
    QUrl redirectTarget;
};

/// A pipe, a device or nothing at all in place of a server: to open or read it may never end, and a
/// server may redirect to it.
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
    // The loop sleeps until there is something to do, and it ends with the application.
    QEventLoop loop;
    QObject::connect(&reply, &QNetworkReply::readyRead, &loop, [&reply, read] {
        read();
        reply.skip(reply.bytesAvailable());
    });
    QObject::connect(&reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    if (!reply.isFinished()) {
        // A nested loop leaves what was posted before it alone until something wakes it.
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
        // Taken as it is, as the suite takes it: a target that is not a whole URL leads nowhere.
        url = answer.redirectTarget;
    }
    const bool isCircle = !answer.isBrokenOff && answer.redirectTarget.isValid();
    if (!answer.isError && !isCircle)
        return std::nullopt;
    return QString::number(answer.httpStatus) + QLatin1Char(':') +
           QString::fromUtf8(answer.body.constData(), answer.body.size());
}

} // namespace OfficeAssiant
