#include <QDir>
#include <QTemporaryDir>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "host/krt.h"
#include "tests/support/shell/headlesstest.h"

namespace {

bool isSafe(const QString &path)
{
    return krt::ksafe::KProcess::checkLocalFileSafe(path);
}

const QByteArray plainText = "Dear reader,\nthis is a letter.\n";
const QByteArray desktopEntry = "[Desktop Entry]\nType=Application\nExec=true\n";
const QByteArray elfStart = QByteArray("\x7f"
                                       "ELF\2\1\1\0\0\0\0\0\0\0\0\0\3\0\x3e\0",
                                       20) +
                            QByteArray(44, '\0');
const QByteArray zipOfNothing = QByteArray("PK\5\6", 4) + QByteArray(18, '\0');

} // namespace

/// Which paths the desktop may open.
class LocalFileSafetyTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_directory.isValid()); }

    void aFileIsJudgedByNameAndContent_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("safe");
        const auto row = [](const char *tag, const char *name, const QByteArray &content, int mode,
                            bool safe) {
            QTest::newRow(tag) << QString::fromUtf8(name) << content << mode << safe;
        };
        row("text", "letter.txt", plainText, 0644, true);
        row("empty", "empty", QByteArray(), 0644, true);
        row("report without a suffix", "systeminfo", plainText, 0644, true);
        row("name with blanks and Chinese", "\xe6\x96\x87 a'\"$(x).txt", plainText, 0644, true);
        row("document", "letter.docx", zipOfNothing, 0644, true);
        row("document that is marked executable", "marked.docx", zipOfNothing, 0755, true);
        row("picture", "picture.png", QByteArray("\x89PNG\r\n\x1a\n"), 0644, true);
        row("web page", "page.html", "<html></html>", 0644, true);

        row("shell script by name", "run.sh", plainText, 0644, false);
        row("shell script by content", "run.txt", "#!/bin/sh\ntrue\n", 0644, false);
        row("executable script without a suffix", "run", "#!/usr/bin/env python3\n", 0755, false);
        row("Python by name", "run.py", plainText, 0644, false);
        row("text that is marked executable", "marked.txt", plainText, 0755, false);
        row("marked executable without a suffix", "marked", plainText, 0700, false);
        row("empty and marked executable", "nothing", QByteArray(), 0755, false);
        row("ELF program", "program", elfStart, 0755, false);
        row("ELF program that is not marked", "program2", elfStart, 0644, false);
        row("ELF program named like a document", "program.docx", elfStart, 0644, false);
        row("Windows program", "setup.exe", "MZ", 0644, false);
        row("Windows program named like a text", "setup.txt", "MZ\x90", 0644, false);
        row("desktop entry by name", "app.desktop", plainText, 0644, false);
        row("desktop entry by content", "app.txt", desktopEntry, 0644, false);
        row("desktop entry behind comments", "app2.txt", "\n# note\n  \n" + desktopEntry, 0644,
            false);
        row("desktop entry with carriage returns", "app3.txt", "[Desktop Entry]\r\nExec=x\r\n",
            0644, false);
        row("upper case suffix", "RUN.SH", plainText, 0644, false);
        row("Java archive", "a.jar", zipOfNothing, 0644, false);

        const QByteArray zipStart = QByteArray("PK\3\4") + QByteArray(26, '\0');
        row("package with another first part", "b.docx", zipStart + "[Content_Types].xml", 0644,
            true);
        row("OpenDocument manifest", "b.odt", zipStart + "META-INF/manifest.xml", 0644, true);
        row("Java archive by content", "a", zipStart + "META-INF/MANIFEST.MF", 0644, false);
        row("Java class by content", "b", QByteArray("\xca\xfe\xba\xbe\0\0\0\x34", 8), 0644, false);
        row("Java start by content", "c", "<?xml version=\"1.0\"?>\n<jnlp spec=\"1.0+\">", 0644,
            false);
        row("Windows shortcut by content", "d",
            QByteArray("L\0\0\0\1\x14\2\0\0\0\0\0\xc0\0\0\0\0\0\0\x46", 20), 0644, false);
        row("Windows application page by content", "e.html", "<html>\n<HTA:Application>", 0644,
            false);
        row("web shortcut by content", "f.txt", "; note\r\n[InternetShortcut]\r\nURL=file:///x",
            0644, false);
        row("Flatpak reference by content", "g", "[Flatpak Ref]\nName=a\n", 0644, false);
        row("Flatpak source by content", "h", "[Flatpak Repo]\nUrl=a\n", 0644, false);
        row("bus service by content", "i", "[D-BUS Service]\nExec=true\n", 0644, false);
        row("system unit by content", "j", "[Unit]\nDescription=a\n", 0644, false);
        row("snap package by content", "k", "hsqs", 0644, false);
    }

    void whatDesktopsRunThroughAHelperIsRefusedByItsName_data()
    {
        QTest::addColumn<QString>("suffix");
        for (const char *suffix :
             {"jnlp", "lnk", "bat",     "cmd",   "ps1", "vbs",      "js",
              "hta",  "url", "service", "class", "jar", "AppImage", "flatpakref",
              "snap", "com", "pif",     "scr",   "msi", "wsf",      "reg"})
            QTest::newRow(suffix) << QString::fromLatin1(suffix);
    }

    void whatDesktopsRunThroughAHelperIsRefusedByItsName()
    {
        QFETCH(QString, suffix);
        const QString name = QStringLiteral("letter.") + suffix;
        const QString upper = QStringLiteral("OTHER.") + suffix.toUpper();
        const QString link =
            m_directory.filePath(QStringLiteral("link to ") + name + QStringLiteral(".txt"));
        QVERIFY(!isSafe(m_directory.filePath(name)));
        const QString file = write(name, plainText, 0644);
        QVERIFY(!isSafe(file));
        QVERIFY(!isSafe(write(upper, plainText, 0644)));
        QVERIFY(QFile::link(file, link));
        QVERIFY(!isSafe(link));
        QVERIFY(isSafe(write(name + QStringLiteral(".txt"), plainText, 0644)));
        QVERIFY(isSafe(write(suffix, plainText, 0644)));
    }

    void aFileIsJudgedByNameAndContent()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(int, mode);
        QFETCH(bool, safe);
        QCOMPARE(isSafe(write(name, content, static_cast<mode_t>(mode))), safe);
    }

    void aRealProgramIsRefused()
    {
        QVERIFY(!isSafe(QStringLiteral("/bin/sh")));
        QVERIFY(!isSafe(QStringLiteral("/proc/self/exe")));
    }

    void aDirectoryIsSafe()
    {
        QVERIFY(isSafe(m_directory.path()));
        QVERIFY(isSafe(QStringLiteral("/")));
        QVERIFY(isSafe(m_directory.path() + QLatin1Char('/')));
    }

    void whatDoesNotExistYetIsSafeUnlessItsNameIsAPrograms()
    {
        QVERIFY(isSafe(m_directory.filePath(QStringLiteral("later"))));
        QVERIFY(isSafe(m_directory.filePath(QStringLiteral("missing/later.txt"))));
        QVERIFY(!isSafe(m_directory.filePath(QStringLiteral("later.sh"))));
        QVERIFY(!isSafe(m_directory.filePath(QStringLiteral("later.desktop"))));
        QVERIFY(!isSafe(m_directory.filePath(QStringLiteral("later.exe"))));
    }

    void aLinkIsJudgedByWhatItLeadsTo()
    {
        const QString program = write(QStringLiteral("target"), "#!/bin/sh\n", 0755);
        const QString letter = write(QStringLiteral("letter"), plainText, 0644);
        const QString bad = m_directory.filePath(QStringLiteral("bad-link.txt"));
        const QString good = m_directory.filePath(QStringLiteral("good-link.txt"));
        const QString device = m_directory.filePath(QStringLiteral("device-link.txt"));
        const QString endless = m_directory.filePath(QStringLiteral("endless"));
        QVERIFY(QFile::link(program, bad));
        QVERIFY(QFile::link(letter, good));
        QVERIFY(QFile::link(QStringLiteral("/dev/null"), device));
        QVERIFY(QFile::link(endless, endless));
        QVERIFY(!isSafe(bad));
        QVERIFY(isSafe(good));
        QVERIFY(!isSafe(device));
        QVERIFY(!isSafe(endless));
    }

    void devicesPipesAndSocketsAreRefused()
    {
        QVERIFY(!isSafe(QStringLiteral("/dev/null")));
        QVERIFY(!isSafe(QStringLiteral("/dev/zero")));
        const QString pipe = m_directory.filePath(QStringLiteral("pipe"));
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QVERIFY(!isSafe(pipe));
        const QString socketPath = m_directory.filePath(QStringLiteral("socket"));
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, QFile::encodeName(socketPath).constData(),
                 sizeof address.sun_path);
        const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        QVERIFY(listener >= 0);
        const int bound = ::bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address);
        ::close(listener);
        QCOMPARE(bound, 0);
        QVERIFY(!isSafe(socketPath));
    }

    void anythingButAnAbsoluteLocalPathIsRefused_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("empty") << QString();
        QTest::newRow("relative") << QStringLiteral("letter.txt");
        QTest::newRow("parent") << QStringLiteral("../letter.txt");
        QTest::newRow("home") << QStringLiteral("~/letter.txt");
        QTest::newRow("file address") << QStringLiteral("file:///tmp");
        QTest::newRow("web address") << QStringLiteral("https://localhost/");
        QTest::newRow("remote mount") << QStringLiteral("//server/share/letter.txt");
        QTest::newRow("resource") << QStringLiteral(":/config/getfileinfo.sh");
        QTest::newRow("blank before") << QStringLiteral(" /tmp");
        QTest::newRow("line feed") << QStringLiteral("/tmp/a\nb");
        QTest::newRow("zero") << QString(QLatin1String("/tmp\0x", 6));
        QTest::newRow("escape") << QStringLiteral("/tmp/\x1b[31m");
        QTest::newRow("delete character") << QStringLiteral("/tmp/\x7f");
        QTest::newRow("control character beyond ASCII") << QStringLiteral("/tmp/\u0085");
        QTest::newRow("very long") << QLatin1Char('/') + QString(1 << 20, QLatin1Char('a'));
        QTest::newRow("below a file") << QStringLiteral("/etc/passwd/letter.txt");
    }

    void anythingButAnAbsoluteLocalPathIsRefused()
    {
        QFETCH(QString, path);
        QVERIFY(!isSafe(path));
    }

private:
    QString write(const QString &name, const QByteArray &content, mode_t mode) const
    {
        QFile file(m_directory.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() ||
            ::fchmod(file.handle(), mode) != 0)
            qFatal("cannot write %s", qPrintable(file.fileName()));
        return file.fileName();
    }

    QTemporaryDir m_directory;
};

HEADLESS_TEST_MAIN(LocalFileSafetyTest)
#include "tst_localfilesafety.moc"
