#include <QFile>

#include <array>

#include <zlib.h>

#include "servercheck/documentservertester.h"
#include "tests/support/loopbackserver.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"

using testsupport::LoopbackServer;
using testsupport::WireRequest;

namespace {

constexpr int mebibyte = 1024 * 1024;
constexpr int gzipWindow = MAX_WBITS + 16;
constexpr int zlibWindow = MAX_WBITS;
constexpr int rawWindow = -MAX_WBITS;

QByteArray packed(const QByteArray &text, int window, int flush = Z_FINISH)
{
    z_stream stream{};
    if (::deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, window, 8, Z_DEFAULT_STRATEGY) !=
        Z_OK)
        qFatal("zlib cannot be used");
    QByteArray input = text;
    QByteArray output(static_cast<int>(::deflateBound(&stream, input.size())) + 64, '\0');
    stream.next_in = reinterpret_cast<Bytef *>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef *>(output.data());
    stream.avail_out = static_cast<uInt>(output.size());
    ::deflate(&stream, flush);
    output.chop(static_cast<int>(stream.avail_out));
    ::deflateEnd(&stream);
    return output;
}

/// What unpacks to 768 MiB of one byte, which is not UTF-8: each is shown as three.
QByteArray bomb()
{
    const QByteArray block = packed(QByteArray(64 * mebibyte, '\xff'), rawWindow, Z_FULL_FLUSH);
    return packed(QByteArray(), gzipWindow, Z_SYNC_FLUSH).left(10) + block.repeated(12);
}

QByteArray encoded(const QByteArray &encoding)
{
    return "Content-Encoding: " + encoding + "\r\n";
}

QString tryServer(const LoopbackServer &server, const QString &headers = QString())
{
    return OfficeAssiant::testDocumentServer(
               {server.url(), QStringLiteral("OpenDocumentFromServer"), headers, QString()})
        .value_or(QStringLiteral("success"));
}

/// A field of /proc/self/status, in MiB.
int memory(const QByteArray &field)
{
    const QByteArray status = testsupport::readFile(QStringLiteral("/proc/self/status"));
    return status.mid(status.indexOf(field + ':') + field.size() + 1)
               .trimmed()
               .split(' ')
               .first()
               .toInt() /
           1024;
}

void forgetMostMemory()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (!file.open(QIODevice::WriteOnly) || file.write("5") != 1)
        qFatal("the highest use of memory cannot be reset");
}

} // namespace

/// Answers that the server has compressed.
class CompressedAnswersTest : public QObject
{
    Q_OBJECT

private slots:
    void anOrdinaryAnswerIsUnpacked_data()
    {
        QTest::addColumn<QByteArray>("encoding");
        QTest::addColumn<QByteArray>("body");
        const QByteArray text = "no \xe6\x97\xa5";
        QTest::newRow("gzip") << QByteArray("gzip") << packed(text, gzipWindow);
        QTest::newRow("other case") << QByteArray("GZip") << packed(text, gzipWindow);
        QTest::newRow("deflate") << QByteArray("deflate") << packed(text, zlibWindow);
        QTest::newRow("deflate without its header")
            << QByteArray("deflate") << packed(text, rawWindow);
        QTest::newRow("more behind the end")
            << QByteArray("gzip") << packed(text, gzipWindow) + "more";
        QTest::newRow("cut off") << QByteArray("gzip") << packed(text, gzipWindow).chopped(8);
        QTest::newRow("not compressed") << QByteArray("identity") << text;
    }

    void anOrdinaryAnswerIsUnpacked()
    {
        QFETCH(QByteArray, encoding);
        QFETCH(QByteArray, body);
        LoopbackServer server([&](const WireRequest &request) {
            return LoopbackServer::response(request.line.contains("good") ? "200 OK" : "404 No",
                                            body, encoded(encoding));
        });
        QCOMPARE(tryServer(server), QStringLiteral("404:no \u65e5"));
        QCOMPARE(server.requests().first().header("accept-encoding"), QByteArray("gzip, deflate"));
    }

    void aLargeAnswerIsUnpackedWhole()
    {
        QByteArray text;
        for (int number = 0; text.size() < 2 * mebibyte - 16; ++number)
            text += QByteArray::number(number * 7919);
        for (const char *status : {"200 OK", "500 Broken"}) {
            LoopbackServer server([&](const WireRequest &) {
                return LoopbackServer::response(status, packed(text, gzipWindow), encoded("gzip"));
            });
            QCOMPARE(tryServer(server), status[0] == '2'
                                            ? QStringLiteral("success")
                                            : QLatin1String("500:") + QLatin1String(text));
        }
    }

    void aCorruptAnswerIsAFailure()
    {
        LoopbackServer server([](const WireRequest &) {
            return LoopbackServer::response("200 OK", "this is not gzip", encoded("gzip"));
        });
        QCOMPARE(tryServer(server), QStringLiteral("200:"));
    }

    void anEncodingThatTheUserAsksForIsNotUnpacked()
    {
        const QByteArray body = packed("text", zlibWindow);
        LoopbackServer server([&](const WireRequest &) {
            return LoopbackServer::response("404 No", body, encoded("deflate"));
        });
        QCOMPARE(tryServer(server, QStringLiteral("accept-encoding:deflate")),
                 QLatin1String("404:") + QString::fromUtf8(body.constData(), body.size()));
    }

    void aCompressedRedirectIsFollowed()
    {
        LoopbackServer server([&](const WireRequest &request) {
            if (request.line.contains("/next"))
                return LoopbackServer::response("404 No", packed("gone", gzipWindow),
                                                encoded("gzip"));
            return LoopbackServer::response(
                "302 Found", packed("moved", gzipWindow),
                encoded("gzip") + "Location: " + server.url(QStringLiteral("/next")).toLatin1() +
                    "\r\n");
        });
        QCOMPARE(tryServer(server), QStringLiteral("404:gone"));
    }

    void aTestTakesAtMost128MebibytesOfMemory_data()
    {
        QTest::addColumn<QByteArray>("response");
        const QByteArray body = bomb();
        for (const char *status : {"200 OK", "401 Who", "404 No", "500 Broken"})
            QTest::newRow(status) << LoopbackServer::response(status, body, encoded("gzip"));
        QTest::newRow("not compressed")
            << LoopbackServer::response("500 Broken", QByteArray(16 * mebibyte, '\xff'));
        QTest::newRow("chunked") << "HTTP/1.1 500 Broken\r\nTransfer-Encoding: chunked\r\n"
                                    "Content-Encoding: gzip\r\n\r\n" +
                                        QByteArray::number(body.size(), 16) + "\r\n" + body +
                                        "\r\n0\r\n\r\n";
    }

    void aTestTakesAtMost128MebibytesOfMemory()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        QSKIP("a sanitizer needs memory of its own");
#endif
        QFETCH(QByteArray, response);
        LoopbackServer server([&](const WireRequest &) { return response; });
        testsupport::RecordingShell shell;
        forgetMostMemory();
        const int before = memory("VmRSS");
        const QString answer =
            shell
                .call(QStringLiteral("openremoveurlcheck"),
                      {{QStringLiteral("urlpath"), server.url()},
                       {QStringLiteral("funcname"), QStringLiteral("OpenDocumentFromServer")}})
                .value(QLatin1String("result"))
                .toString();
        const int grown = memory("VmHWM") - before;
        QVERIFY2(grown <= 128, qPrintable(QString::number(grown)));
        QVERIFY(!answer.isEmpty());
    }
};

HEADLESS_TEST_MAIN(CompressedAnswersTest)
#include "tst_compressedanswers.moc"
