#include <QSslConfiguration>

#include "servercheck/formdata.h"
#include "servercheck/testrequest.h"
#include "tests/support/shell/headlesstest.h"

using namespace OfficeAssiant;

namespace {

const QByteArray boundary("---------------------------1456992029567962774924545351");
const QByteArray digest("1344763764e0e45f3f68c8c76ce06e79");

QByteArray field(const QByteArray &name, const QByteArray &value)
{
    return "--" + boundary + "\r\nContent-Disposition: form-data; name=\"" + name + "\"\r\n\r\n" +
           value + "\r\n";
}

QByteArray file(const QByteArray &name)
{
    return "--" + boundary + "\r\nContent-Disposition: form-data; name=\"file\"; filename=\"" +
           name + "\"\r\nContent-Type: application/octet-stream\r\n\r\ntest Data\r\n--" + boundary +
           "--\r\n";
}

QNetworkRequest request(const QString &functionName, const QString &headerList = QString(),
                        const QUrl &url = QUrl(QStringLiteral("http://127.0.0.1/")))
{
    return makeTestRequest({QString(), functionName, headerList, QString()}, url).request;
}

QByteArray body(const QString &formFieldList)
{
    const ServerTest test{QString(), QStringLiteral("saveURL_FormData"), QString(), formFieldList};
    return makeTestRequest(test, QUrl(QStringLiteral("http://127.0.0.1/"))).body;
}

} // namespace

/// The requests that the document-server tester sends, byte for byte.
class TestRequestTest : public QObject
{
    Q_OBJECT

private slots:
    void theFunctionNameDecidesTheKind_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("kind");
        const auto add = [](const char *name, RequestKind kind) {
            QTest::newRow(name) << QString::fromLatin1(name) << static_cast<int>(kind);
        };
        add("OpenDocumentFromServer", RequestKind::Get);
        add("openURL", RequestKind::Get);
        add("saveurl", RequestKind::Get);
        add("SAVEURL_FormData", RequestKind::Get);
        add("saveURL", RequestKind::PlainPost);
        add("my saveURL here", RequestKind::PlainPost);
        add("saveURL_formdata", RequestKind::PlainPost);
        add("saveURL_s", RequestKind::PlainPost);
        add("SaveDocumentToServer2", RequestKind::PlainPost);
        add("saveURL_FormData", RequestKind::MultipartPost);
        add("saveURL_s_FormData", RequestKind::MultipartPost);
        add("saveURL_GetData_FormData", RequestKind::MultipartPost);
        add("saveURL_CustomParam_FormData", RequestKind::MultipartPost);
        add("SaveDocumentToServer", RequestKind::MultipartPost);
    }

    void theFunctionNameDecidesTheKind()
    {
        QFETCH(QString, name);
        QTEST(static_cast<int>(requestKind(name)), "kind");
    }

    void aPartThatIsNotANameAndAValueIsLeftOut()
    {
        const auto pairs = parseNameValueList(QStringLiteral(";b:2;;a:1;bad;x:y:z;e:;:f;b:3;"));
        const QVector<QPair<QString, QString>> expected{
            {QStringLiteral("b"), QStringLiteral("2")}, {QStringLiteral("a"), QStringLiteral("1")},
            {QStringLiteral("e"), QString()},           {QString(), QStringLiteral("f")},
            {QStringLiteral("b"), QStringLiteral("3")},
        };
        QCOMPARE(pairs, expected);
        QVERIFY(parseNameValueList(QString()).isEmpty());
    }

    void aListWithoutFieldsStillSendsTheFileName()
    {
        QCOMPARE(body(QString()), field("fileName", "test.txt") + file("test.txt"));
    }

    void fieldsGoInTheOrderOfTheirNamesAndFaultyPartsNotAtAll()
    {
        QCOMPARE(body(QStringLiteral("b:2;a:1;bad;x:y:z")), field("a", "1") + field("b", "2") +
                                                                field("fileName", "test.txt") +
                                                                file("test.txt"));
        QCOMPARE(body(QStringLiteral("a:2;Z:1")), field("Z", "1") + field("a", "2") +
                                                      field("fileName", "test.txt") +
                                                      file("test.txt"));
    }

    void theFileTakesTheNameOfTheUsersField()
    {
        QCOMPARE(body(QStringLiteral("fileName:first;fileName:\u65e5 \"%1\".docx")),
                 field("fileName", "\xe6\x97\xa5 \"%1\".docx") + file("\xe6\x97\xa5 \"%1\".docx"));
        QCOMPARE(body(QStringLiteral("fileName:")), field("fileName", "") + file(""));
        QCOMPARE(body(QStringLiteral("filename:x;%1:%2")),
                 field("%1", "%2") + field("fileName", "test.txt") + field("filename", "x") +
                     file("test.txt"));
    }

    void aGetHasOnlyTheUsersHeaders()
    {
        const QNetworkRequest made =
            request(QStringLiteral("OpenDocumentFromServer"), QStringLiteral("X-A:1;X-B:\u65e5"));
        const QList<QByteArray> names{"X-A", "X-B"};
        QCOMPARE(made.rawHeaderList(), names);
        QCOMPARE(made.rawHeader("X-B"), QByteArray("\xe6\x97\xa5"));
    }

    void aPlainPostNamesFileAndDigest()
    {
        const QNetworkRequest made = request(QStringLiteral("saveURL"));
        QCOMPARE(made.rawHeaderList().size(), 3);
        QCOMPARE(made.rawHeader("Content-Type"), QByteArray("application/octet-stream"));
        QCOMPARE(made.rawHeader("filename"), QByteArray("test.txt"));
        QCOMPARE(made.rawHeader("md5sum"), digest);
    }

    void inAPlainPostEveryHeaderOfTheUserWins()
    {
        const QNetworkRequest made =
            request(QStringLiteral("saveURL"),
                    QStringLiteral("MD5SUM:mine;FileName:other;content-type:text/plain"));
        QCOMPARE(made.rawHeaderList().size(), 3);
        QCOMPARE(made.rawHeader("md5sum"), QByteArray("mine"));
        QCOMPARE(made.rawHeader("filename"), QByteArray("other"));
        QCOMPARE(made.rawHeader("Content-Type"), QByteArray("text/plain"));
    }

    void inAMultipartPostTypeAndLengthAreTheBodys()
    {
        const QString headers =
            QStringLiteral("md5sum:mine;Content-Type:text/plain;Content-Length:3;filename:x");
        const QNetworkRequest made = request(QStringLiteral("saveURL_FormData"), headers);
        QCOMPARE(made.rawHeaderList().size(), 4);
        QCOMPARE(made.rawHeader("md5sum"), QByteArray("mine"));
        QCOMPARE(made.rawHeader("filename"), QByteArray("x"));
        QCOMPARE(made.rawHeader("Content-Type"),
                 QByteArray("multipart/form-data; boundary=" + boundary));
        QCOMPARE(made.rawHeader("Content-Length"), QByteArray::number(body(QString()).size()));
        QCOMPARE(request(QStringLiteral("saveURL_FormData")).rawHeader("md5sum"), digest);
    }

    void theLastHeaderOfANameWins()
    {
        const QNetworkRequest made =
            request(QStringLiteral("openURL"), QStringLiteral("b:1;B:2;e:;:none"));
        const QList<QByteArray> names{"B", "e"};
        QCOMPARE(made.rawHeaderList(), names);
        QCOMPARE(made.rawHeader("b"), QByteArray("2"));
    }

    void aLineEndMakesNoSecondHeader()
    {
        const QNetworkRequest made =
            request(QStringLiteral("openURL"),
                    QStringLiteral("X-A:1\r\nHost;X-B\n:2;\rX-C:3;X-D:4;X-E:5\r"));
        QCOMPARE(made.rawHeaderList(), QList<QByteArray>{"X-D"});
    }

    void aLineEndInAFieldsNameMakesNoSecondHeader()
    {
        QCOMPARE(body(QStringLiteral("a\r\nX-A:1\r\n2;fileName:b\r\n\r\n.docx")),
                 field("a%0D%0AX-A", "1\r\n2") + field("fileName", "b\r\n\r\n.docx") +
                     file("b%0D%0A%0D%0A.docx"));
    }

    void onlyASecureAddressHasItsCertificateUnchecked()
    {
        for (const char *url : {"https://127.0.0.1/", "HTTPS://127.0.0.1/"}) {
            const QSslConfiguration ssl =
                request(QStringLiteral("openURL"), QString(), QUrl(QLatin1String(url)))
                    .sslConfiguration();
            QCOMPARE(ssl.peerVerifyMode(), QSslSocket::VerifyNone);
            QCOMPARE(ssl.protocol(), QSsl::AnyProtocol);
        }
        const QSslConfiguration plain = request(QStringLiteral("openURL")).sslConfiguration();
        QCOMPARE(plain, QSslConfiguration::defaultConfiguration());
        QVERIFY(plain.peerVerifyMode() != QSslSocket::VerifyNone);
    }
};

HEADLESS_TEST_MAIN(TestRequestTest)
#include "tst_testrequest.moc"
