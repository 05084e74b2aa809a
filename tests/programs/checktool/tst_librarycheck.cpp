#include <QDir>
#include <QProcess>

#include <elf.h>
#include <sys/mman.h>
#include <unistd.h>

#include "programs/checktool/libraries/elffile.h"
#include "programs/checktool/libraries/libraryclosure.h"
#include "tests/programs/checktool/checkedmachine.h"
#include "tests/support/shell/headlesstest.h"

using programs::ElfFile;
using testsupport::CheckedMachine;
using testsupport::hasLine;
using testsupport::problems;

namespace {

const QString program = QStringLiteral(SUITE_OFFICE_DIR "/vyr");

/// A copy of the program with some bytes replaced by as many others.
QByteArray changed(const QByteArray &from, const QByteArray &to)
{
    QByteArray content = testsupport::readFile(program);
    if (from.size() != to.size() || !content.contains(from))
        qFatal("%s cannot be replaced", from.constData());
    return content.replace(from, to);
}

} // namespace

/// Libraries that the dynamic loader cannot resolve.
class LibraryCheckTest : public QObject
{
    Q_OBJECT

private slots:
    void aProgramThatHasAllItNeedsIsFine()
    {
        CheckedMachine checked;
        checked.writeProgram(QStringLiteral("office/vyr"), testsupport::readFile(program));
        const QStringList lines = checked.check("libraries");
        QCOMPARE(problems(lines), QStringList());
        QVERIFY(hasLine(lines, {QStringLiteral("can be loaded")}));
    }

    void theLibrariesFoundAreThoseThatTheLoaderFinds()
    {
        QProcess loader;
        loader.start(QStringLiteral("/usr/bin/ldd"), {program});
        QVERIFY(loader.waitForFinished(30000));
        QSet<QString> expected{QFileInfo(program).canonicalFilePath()};
        const QList<QByteArray> lines = loader.readAllStandardOutput().split('\n');
        for (const QByteArray &line : lines) {
            const int path = line.indexOf('/');
            if (path >= 0)
                expected.insert(
                    QFileInfo(QFile::decodeName(line.mid(path, line.indexOf(" (") - path)))
                        .canonicalFilePath());
        }
        programs::LibraryClosure closure(programs::LibrarySearch::of(programs::Machine::current()));
        QCOMPARE(closure.add(program).state, ElfFile::State::Good);
        const QStringList found = closure.paths();
        QVERIFY(expected.size() > 5);
        QCOMPARE(QSet<QString>(found.begin(), found.end()), expected);
    }

    void aLibraryThatIsNowhereIsNamedWithThoseThatNeedIt()
    {
        CheckedMachine checked;
        checked.writeProgram(QStringLiteral("office/vyr"),
                             changed("libfontconfig.so.1", "libfontconfig.so.9"));
        const QStringList found = problems(checked.check("libraries"));
        QCOMPARE(found.size(), 1);
        QVERIFY(hasLine(found, {QStringLiteral("The library libfontconfig.so.9 is missing; vyr")}));
    }

    void aLibraryThatLacksAVersionIsTooOld()
    {
        CheckedMachine checked;
        checked.writeProgram(QStringLiteral("office/vyr"), changed("GLIBC_2.34", "GLIBC_9.99"));
        const QStringList found = problems(checked.check("libraries"));
        QCOMPARE(found.size(), 1);
        QVERIFY(hasLine(found, {QStringLiteral("libc.so.6"), QStringLiteral("GLIBC_9.99")}));
    }

    void aLibraryForAnotherProcessorIsNoUse()
    {
        CheckedMachine checked;
        QByteArray other = testsupport::readFile(QStringLiteral(SUITE_OFFICE_DIR "/vyr"));
        other[18] = EM_PPC64;
        other[19] = char(0);
        checked.writeProgram(QStringLiteral("office/vyr"), other);
        QVERIFY(hasLine(problems(checked.check("libraries")),
                        {QStringLiteral("vyr"), QStringLiteral("another kind of processor")}));
        const QString directory =
            QFileInfo(checked.write(QStringLiteral("lib/libfontconfig.so.9"), other)).path();
        checked.set("LD_LIBRARY_PATH", directory);
        checked.writeProgram(QStringLiteral("office/vyr"),
                             changed("libfontconfig.so.1", "libfontconfig.so.9"));
        QVERIFY(hasLine(problems(checked.check("libraries")),
                        {QStringLiteral("libfontconfig.so.9"),
                         QStringLiteral("another kind of processor only")}));
    }

    void theUsersLibraryDirectoriesCount()
    {
        CheckedMachine checked;
        checked.writeProgram(QStringLiteral("office/vyr"),
                             changed("libfontconfig.so.1", "libfontconfig.so.9"));
        const QString found =
            QFileInfo(QStringLiteral("/usr/lib/" LIBRARY_ARCHITECTURE "/libfontconfig.so.1"))
                .canonicalFilePath();
        QVERIFY(!found.isEmpty());
        checked.makeDirectory(QStringLiteral("lib"));
        QVERIFY(QFile::link(found, checked.path(QStringLiteral("lib/libfontconfig.so.9"))));
        checked.set("LD_LIBRARY_PATH",
                    QStringLiteral("/nowhere;") + checked.path(QStringLiteral("lib")));
        QCOMPARE(problems(checked.check("libraries")), QStringList());
    }

    void damagedLibrariesOfTheSuiteAreNamed()
    {
        CheckedMachine checked;
        const QByteArray whole = testsupport::readFile(program);
        checked.writeProgram(QStringLiteral("office/vyr"), whole);
        checked.write(QStringLiteral("office/addons/a/libshort.so"), whole.left(4096));
        checked.write(QStringLiteral("office/addons/b/libtext.so.1"), "no library");
        checked.write(QStringLiteral("office/addons/b/libempty.so"), {});
        const QStringList found = problems(checked.check("libraries"));
        QCOMPARE(found.size(), 3);
        for (const char *name : {"libshort.so", "libtext.so.1", "libempty.so"})
            QVERIFY(hasLine(found, {QString::fromLatin1(name), QStringLiteral("damaged")}));
    }

    void theProgramItselfHasToBeThereAndRun()
    {
        CheckedMachine checked;
        QVERIFY(hasLine(problems(checked.check("libraries")),
                        {QStringLiteral("office/vyr is not there")}));
        checked.write(QStringLiteral("office/vyr"), testsupport::readFile(program));
        QVERIFY(hasLine(problems(checked.check("libraries")), {QStringLiteral("may not be run")}));
        checked.writeProgram(QStringLiteral("office/vyr"), "#!/bin/sh\n");
        QCOMPARE(problems(checked.check("libraries")), QStringList());
    }

    void aNameWithDirectoriesIsNoProgramOfTheSuite()
    {
        const CheckedMachine checked;
        const QStringList found =
            problems(checked.check("libraries", {}, QStringLiteral("../../../../usr/bin/env")));
        QVERIFY(hasLine(found, {QStringLiteral("is not the name of a program")}));
    }

    void anotherFileCanBeLookedInto()
    {
        const CheckedMachine checked;
        QCOMPARE(problems(checked.check("libraries", program)), QStringList());
        QVERIFY(hasLine(problems(checked.check("libraries", QStringLiteral("/nowhere/x"))),
                        {QStringLiteral("There is no file /nowhere/x.")}));
    }

    void whatAFileClaimsNeverTakesTheToolAlong()
    {
        const QByteArray whole = testsupport::readFile(
            QStringLiteral("/usr/lib/" LIBRARY_ARCHITECTURE "/libfontconfig.so.1"));
        const int file = memfd_create("library", 0);
        QCOMPARE(write(file, whole.constData(), size_t(whole.size())), ssize_t(whole.size()));
        // Every byte of the headers, and samples of the rest.
        int broken = 0;
        for (int n = 0; n < 2000; ++n) {
            const int at = n < 1024 ? n : (n - 1024) * (whole.size() / 976);
            const char changed = char(whole.at(at) ^ 0xff);
            QCOMPARE(pwrite(file, &changed, 1, at), ssize_t(1));
            broken += programs::readElf(file).state == ElfFile::State::Good ? 0 : 1;
            QCOMPARE(pwrite(file, whole.constData() + at, 1, at), ssize_t(1));
        }
        QVERIFY(broken > 20);
        QVERIFY(programs::readElf(file).state == ElfFile::State::Good);
        for (int length = whole.size() - 8192; length > 0; length -= 997) {
            QCOMPARE(ftruncate(file, length), 0);
            QVERIFY(programs::readElf(file).state != ElfFile::State::Good);
        }
        close(file);
    }

    void theLoadersListIsReadByName()
    {
        const auto paths = programs::parseLoaderCache("12 libs found in cache `/etc/ld.so.cache'\n"
                                                      "\tliba.so.1 (libc6,x86-64) => /x/liba.so.1\n"
                                                      "\tliba.so.1 (libc6) => /y/liba.so.1\n"
                                                      "nonsense => /z\n");
        QCOMPARE(paths.size(), 1);
        QCOMPARE(paths.value(QStringLiteral("liba.so.1")),
                 (QStringList{QStringLiteral("/x/liba.so.1"), QStringLiteral("/y/liba.so.1")}));
    }
};

HEADLESS_TEST_MAIN(LibraryCheckTest)
#include "tst_librarycheck.moc"
