#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>

#include "servercheck/documentservertester.h"
#include "tests/support/loopbackserver.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"

using namespace OfficeAssiant;
using testsupport::LoopbackServer;
using testsupport::WireRequest;

namespace {

const QString open = QStringLiteral("OpenDocumentFromServer");
const QString plainSave = QStringLiteral("saveURL");
const QString formSave = QStringLiteral("saveURL_FormData");
const QString succeeded = QStringLiteral("success");

/// "success", or the failure.
QString tryServer(const QString &url, const QString &functionName = open,
                  const QString &headers = QString())
{
    return testDocumentServer({url, functionName, headers, QString()}).value_or(succeeded);
}

QByteArray redirect(const QByteArray &target)
{
    return LoopbackServer::response("302 Found", "moved", "Location: " + target + "\r\n");
}

QJsonObject testOf(const QString &url)
{
    return {{QStringLiteral("urlpath"), url}, {QStringLiteral("funcname"), open}};
}

} // namespace

/// Test requests to a server on the loopback interface, and what they find.
class DocumentServerTesterTest : public QObject
{
    Q_OBJECT

private slots:
    void anOpenFunctionSendsABareGet()
    {
        LoopbackServer server(okay);
        QCOMPARE(tryServer(server.url(QStringLiteral("/a%20b?c=d"))), succeeded);
        QCOMPARE(server.requests().size(), 1);
        const WireRequest &request = server.requests().first();
        QCOMPARE(request.line, QByteArray("GET /a%20b?c=d HTTP/1.1"));
        QVERIFY(request.body.isEmpty());
        for (const char *name : {"md5sum", "filename", "content-type", "content-length", "cookie"})
            QVERIFY2(request.header(name).isNull(), name);
    }

    void aPlainSaveSendsTheTestData()
    {
        LoopbackServer server(okay);
        QCOMPARE(tryServer(server.url(), plainSave), succeeded);
        const WireRequest &request = server.requests().first();
        QCOMPARE(request.line, QByteArray("POST / HTTP/1.1"));
        QCOMPARE(request.body, QByteArray("test Data"));
        QCOMPARE(request.header("filename"), QByteArray("test.txt"));
        QCOMPARE(request.header("md5sum"), QByteArray("1344763764e0e45f3f68c8c76ce06e79"));
        QCOMPARE(request.header("content-type"), QByteArray("application/octet-stream"));
        QCOMPARE(request.header("content-length"), QByteArray("9"));
    }

    void aFormSaveSendsItsLengthAndBodyOnce()
    {
        LoopbackServer server(okay);
        QCOMPARE(tryServer(server.url(), formSave, QStringLiteral("Content-Length:3")), succeeded);
        const WireRequest &request = server.requests().first();
        QCOMPARE(request.header("content-length").toInt(), request.body.size());
        QCOMPARE(request.body.count("test Data"), 1);
        QVERIFY(request.body.endsWith("--\r\n"));
    }

    void aFailureIsToldAsStatusAndText_data()
    {
        QTest::addColumn<QByteArray>("response");
        QTest::addColumn<QString>("expected");
        QTest::newRow("404") << LoopbackServer::response("404 Not Found", "no \xe6\x97\xa5")
                             << QStringLiteral("404:no \u65e5");
        QTest::newRow("500 without text")
            << LoopbackServer::response("500 Broken", "") << QStringLiteral("500:");
        QTest::newRow("401") << LoopbackServer::response("401 Who", "who are you",
                                                         "WWW-Authenticate: Basic realm=\"x\"\r\n")
                             << QStringLiteral("401:who are you");
        QTest::newRow("zero byte") << LoopbackServer::response("503 Busy", QByteArray("a\0b", 3))
                                   << QString::fromLatin1("503:a\0b", 7);
        QTest::newRow("cut off in the middle")
            << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf")
            << QStringLiteral("200:half");
        QTest::newRow("dropped") << QByteArray() << QStringLiteral("0:");
        QTest::newRow("not HTTP") << QByteArray("SSH-2.0-none\r\n") << QStringLiteral("0:");
    }

    void aFailureIsToldAsStatusAndText()
    {
        QFETCH(QByteArray, response);
        for (const QString &functionName : {open, plainSave, formSave}) {
            LoopbackServer server([&](const WireRequest &) { return response; });
            QTEST(tryServer(server.url(), functionName), "expected");
        }
    }

    void withoutAServerTheStatusIsZero_data()
    {
        QTest::addColumn<QString>("url");
        QTest::newRow("refused") << QStringLiteral("http://127.0.0.1:1/");
        QTest::newRow("no scheme") << QStringLiteral("no address at all");
        QTest::newRow("unknown scheme") << QStringLiteral("localhost:8080/path");
        QTest::newRow("not valid") << QStringLiteral("http://[");
        QTest::newRow("TLS refused") << QStringLiteral("https://127.0.0.1:1/");
    }

    void withoutAServerTheStatusIsZero()
    {
        QFETCH(QString, url);
        for (const QString &functionName : {open, plainSave, formSave})
            QCOMPARE(tryServer(url, functionName), QStringLiteral("0:"));
    }

    void aRedirectIsFollowedWithTheWholeRequest()
    {
        for (const QString &functionName : {open, plainSave, formSave}) {
            LoopbackServer target(okay);
            LoopbackServer server(
                [&](const WireRequest &) { return redirect(target.url().toLatin1()); });
            QCOMPARE(tryServer(server.url(), functionName, QStringLiteral("X-Mine:1")), succeeded);
            QCOMPARE(target.requests().size(), 1);
            const WireRequest &request = target.requests().first();
            QCOMPARE(request.line, server.requests().first().line);
            QCOMPARE(request.body, server.requests().first().body);
            QCOMPARE(request.header("x-mine"), QByteArray("1"));
            QCOMPARE(request.header("md5sum"), server.requests().first().header("md5sum"));
        }
    }

    void theAnswerAfterARedirectDecides()
    {
        LoopbackServer server([&](const WireRequest &request) {
            return request.line.contains("/gone")
                       ? LoopbackServer::response("404 Gone", "gone")
                       : redirect(server.url(QStringLiteral("/gone")).toLatin1());
        });
        QCOMPARE(tryServer(server.url()), QStringLiteral("404:gone"));
    }

    void aTargetThatIsNotAWholeUrlLeadsNowhere()
    {
        for (const char *target : {"/next", "next", "//127.0.0.1/next", "mailto:a@b"}) {
            LoopbackServer server([&](const WireRequest &) { return redirect(target); });
            QCOMPARE(tryServer(server.url()), QStringLiteral("0:"));
            QCOMPARE(server.requests().size(), 1);
        }
    }

    void anInvalidTargetIsNotFollowed()
    {
        for (const char *target : {"", "http://[", "http://h:port/"}) {
            LoopbackServer server([&](const WireRequest &) { return redirect(target); });
            QCOMPARE(tryServer(server.url()), succeeded);
            QCOMPARE(server.requests().size(), 1);
        }
    }

    void anAddressOfAPipeOrDeviceIsNotRead_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("pipe") << m_directory.filePath(QStringLiteral("pipe"));
        QTest::newRow("endless device") << QStringLiteral("/dev/zero");
        QTest::newRow("directory") << m_directory.path();
        QTest::newRow("missing") << m_directory.filePath(QStringLiteral("missing"));
    }

    void anAddressOfAPipeOrDeviceIsNotRead()
    {
        QFETCH(QString, path);
        ::mkfifo(QFile::encodeName(m_directory.filePath(QStringLiteral("pipe"))).constData(), 0600);
        const QString url = QUrl::fromLocalFile(path).toString();
        QCOMPARE(tryServer(url), QStringLiteral("0:"));
        LoopbackServer server([&](const WireRequest &) { return redirect(url.toLatin1()); });
        QCOMPARE(tryServer(server.url()), QStringLiteral("0:"));
    }

    void anAddressOfAFileIsASuccessHoweverLargeTheFileIs()
    {
        QFile file(m_directory.filePath(QStringLiteral("file")));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(qint64(1) << 40));
        QCOMPARE(tryServer(QUrl::fromLocalFile(file.fileName()).toString()), succeeded);
    }

    void aCircleOfRedirectsEndsAsAFailure()
    {
        LoopbackServer server(
            [&](const WireRequest &) { return redirect(server.url().toLatin1()); });
        QCOMPARE(tryServer(server.url(), formSave), QStringLiteral("302:moved"));
        QCOMPARE(server.requests().size(), 201);
    }

    void onlyAGetKeepsNoCookies()
    {
        for (const QString &functionName : {open, plainSave, formSave}) {
            LoopbackServer server([&](const WireRequest &request) {
                if (request.line.contains("/next"))
                    return okay(request);
                return LoopbackServer::response("302 Found", "",
                                                "Set-Cookie: a=b; Path=/\r\nLocation: " +
                                                    server.url(QStringLiteral("/next")).toLatin1() +
                                                    "\r\n");
            });
            QCOMPARE(tryServer(server.url(), functionName), succeeded);
            QCOMPARE(server.requests().at(1).header("cookie"),
                     functionName == open ? QByteArray() : QByteArray("a=b"));
        }
    }

    void whatIsBeyond2MebibytesOfAnAnswerIsThrownAway()
    {
        const int limit = 2 * 1024 * 1024;
        const QByteArray text(limit + 1000000, 'x');
        LoopbackServer server(
            [&](const WireRequest &) { return LoopbackServer::response("500 Broken", text); });
        QCOMPARE(tryServer(server.url()).size(), 4 + limit);
    }

    void anEmptyAddressOrFunctionIsAParameterError_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("functionName");
        QTest::newRow("no address") << QString() << open;
        QTest::newRow("no function") << QStringLiteral("http://127.0.0.1:1/") << QString();
        QTest::newRow("neither") << QString() << QString();
    }

    void anEmptyAddressOrFunctionIsAParameterError()
    {
        QFETCH(QString, url);
        QFETCH(QString, functionName);
        testsupport::RecordingShell shell;
        const QJsonObject answer = shell.call(
            QStringLiteral("openremoveurlcheck"),
            {{QStringLiteral("urlpath"), url}, {QStringLiteral("funcname"), functionName}});
        QCOMPARE(answer.value(QLatin1String("result")).toString(), QStringLiteral("parame error"));
    }

    void theCommandAnswersSuccessOrTheStatusAsBase64()
    {
        LoopbackServer server([](const WireRequest &request) {
            return request.line.contains("/bad")
                       ? LoopbackServer::response("404 No", "\xe6\x97\xa5")
                       : okay(request);
        });
        testsupport::RecordingShell shell;
        const QString command = QStringLiteral("openremoveurlcheck");
        QCOMPARE(shell.call(command, testOf(server.url())).value(QLatin1String("result")),
                 QJsonValue(succeeded));
        QCOMPARE(shell.call(command, testOf(server.url(QStringLiteral("/bad"))))
                     .value(QLatin1String("result")),
                 QJsonValue(QString::fromLatin1(QByteArray("404:\xe6\x97\xa5").toBase64())));
    }

private:
    static QByteArray okay(const WireRequest &)
    {
        return LoopbackServer::response("200 OK", "done");
    }

    QTemporaryDir m_directory;
};

HEADLESS_TEST_MAIN(DocumentServerTesterTest)
#include "tst_documentservertester.moc"
