#include <QDir>
#include <QFile>
#include <QTest>
#include <QUrl>

#include "helio/webengine/pagedirectory.h"
#include "tests/support/shell/headlesstest.h"

using helio::PageDirectory;
using testsupport::PrivateHome;

class PageDirectoryTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void onlyExistingFilesBelowTheDirectoryAreItsOwn_data();
    void onlyExistingFilesBelowTheDirectoryAreItsOwn();
    void aDirectoryReachedThroughALinkIsTheSame();
    void aDirectoryThatDoesNotExistContainsNothing();
    void namesWithOddCharactersHaveAnAddress();

private:
    QString m_root;
    QString m_pages;
};

void PageDirectoryTest::initTestCase()
{
    const PrivateHome &home = PrivateHome::current();
    for (const char *name :
         {"app/html/index.html", "app/html/sub/page.html", "app/html/a b%2f#.html",
          "app/html2.html", "app/html2/index.html", "app/secret.html"})
        home.writeFile(QString::fromUtf8(name), "x");
    m_root = home.path() + QStringLiteral("/app");
    m_pages = m_root + QStringLiteral("/html");
    QVERIFY(QFile::link(m_root + QStringLiteral("/secret.html"),
                        m_pages + QStringLiteral("/leak.html")));
    QVERIFY(QFile::link(m_root, m_pages + QStringLiteral("/up")));
    QVERIFY(QFile::link(m_pages + QStringLiteral("/index.html"),
                        m_pages + QStringLiteral("/alias.html")));
}

void PageDirectoryTest::onlyExistingFilesBelowTheDirectoryAreItsOwn_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("isOwn");
    const auto below = [this](const char *rest) {
        return QStringLiteral("file://") + m_pages + QString::fromUtf8(rest);
    };

    QTest::newRow("a page") << below("/index.html") << true;
    QTest::newRow("a page in a folder") << below("/sub/page.html") << true;
    QTest::newRow("query and fragment") << below("/index.html?a=../../x#/../..") << true;
    QTest::newRow("a way around inside") << below("/sub/../index.html") << true;
    QTest::newRow("a doubled slash") << below("//index.html") << true;
    QTest::newRow("an encoded letter") << below("/%69ndex.html") << true;
    QTest::newRow("scheme in capitals")
        << QStringLiteral("FILE://") + m_pages + QStringLiteral("/index.html") << true;
    QTest::newRow("a link that stays inside") << below("/alias.html") << true;

    QTest::newRow("the directory") << below("/") << false;
    QTest::newRow("the directory without its slash") << below("") << false;
    QTest::newRow("a folder") << below("/sub") << false;
    QTest::newRow("a missing page") << below("/none.html") << false;
    QTest::newRow("a name in another case") << below("/INDEX.html") << false;
    QTest::newRow("a directory whose name begins alike") << below("2/index.html") << false;
    QTest::newRow("a file whose name begins alike") << below("2.html") << false;
    QTest::newRow("traversal") << below("/../secret.html") << false;
    QTest::newRow("traversal from a folder") << below("/sub/../../secret.html") << false;
    QTest::newRow("encoded dots") << below("/%2e%2e/secret.html") << false;
    QTest::newRow("an encoded slash") << below("/..%2fsecret.html") << false;
    QTest::newRow("an encoded slash inside") << below("/sub%2Fpage.html") << false;
    QTest::newRow("an encoded backslash") << below("/sub%5cpage.html") << false;
    QTest::newRow("an encoded zero") << below("/index.html%00.png") << false;
    QTest::newRow("a link that leads outside") << below("/leak.html") << false;
    QTest::newRow("a folder link that leads outside") << below("/up/secret.html") << false;
    QTest::newRow("a host") << QStringLiteral("file://localhost") + m_pages +
                                   QStringLiteral("/index.html")
                            << false;
    QTest::newRow("another scheme")
        << QStringLiteral("http://") + m_pages + QStringLiteral("/index.html") << false;
    QTest::newRow("the source of a page")
        << QStringLiteral("view-source:") + below("/index.html") << false;
    QTest::newRow("a relative address") << QStringLiteral("index.html") << false;
    QTest::newRow("an empty document") << QStringLiteral("about:blank") << false;
    QTest::newRow("no address") << QString() << false;
}

void PageDirectoryTest::onlyExistingFilesBelowTheDirectoryAreItsOwn()
{
    QFETCH(const QString, address);
    QFETCH(const bool, isOwn);
    QCOMPARE(PageDirectory(m_pages).contains(QUrl(address)), isOwn);
    QCOMPARE(PageDirectory(m_pages + QLatin1Char('/')).contains(QUrl(address)), isOwn);
}

void PageDirectoryTest::aDirectoryReachedThroughALinkIsTheSame()
{
    const QString link = PrivateHome::current().path() + QStringLiteral("/linked");
    QVERIFY(QFile::link(m_pages, link));
    const PageDirectory pages(link);
    QVERIFY(pages.contains(QUrl::fromLocalFile(link + QStringLiteral("/index.html"))));
    QVERIFY(pages.contains(QUrl::fromLocalFile(m_pages + QStringLiteral("/index.html"))));
    QVERIFY(!pages.contains(QUrl::fromLocalFile(link + QStringLiteral("/leak.html"))));
}

void PageDirectoryTest::aDirectoryThatDoesNotExistContainsNothing()
{
    const PageDirectory pages(m_root + QStringLiteral("/none"));
    QVERIFY(!pages.contains(QUrl::fromLocalFile(m_pages + QStringLiteral("/index.html"))));
    QVERIFY(!pages.contains(QUrl(QStringLiteral("file:///etc/passwd"))));
}

void PageDirectoryTest::namesWithOddCharactersHaveAnAddress()
{
    const PageDirectory pages(m_pages);
    const QUrl plain = pages.urlOf(QStringLiteral("index.html"));
    QCOMPARE(plain.toLocalFile(), m_pages + QStringLiteral("/index.html"));
    QVERIFY(pages.contains(plain));
    QVERIFY(pages.contains(pages.urlOf(QStringLiteral("a b%2f#.html"))));
}

HEADLESS_TEST_MAIN(PageDirectoryTest)
#include "tst_pagedirectory.moc"
