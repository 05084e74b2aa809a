#include "programs/checktool/printing/printing.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QProcess>

#include <csignal>
#include <stdexcept>

#include <sys/stat.h>
#include <utime.h>

#include "tests/programs/checktool/checkedmachine.h"
#include "tests/support/lifeline.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"

using testsupport::CheckedMachine;

namespace {

/// Converts as a real office suite does; $7 is the output directory, $8 the document.
const QByteArray works = "name=$(basename -- \"$8\"; echo x)\n"
                         "name=${name%??}\n"
                         "printf '%%PDF-1.7 %s\\n' \"$name\" > \"$7/${name%.*}.pdf\"\n";

} // namespace

/// Printing documents to PDF with a fake office suite.
class PrintingTest : public QObject
{
    Q_OBJECT

private slots:
    void thePdfIsNamedAfterThePartBeforeTheFirstDot()
    {
        const Printer printer(works);
        const QString document = printer.document(QStringLiteral("report.final.DOCX"));
        QCOMPARE(programs::printDocument(printer.machine(), document),
                 printer.pdf(QStringLiteral("report.pdf")));
        QCOMPARE(testsupport::readFile(printer.pdf(QStringLiteral("report.pdf"))),
                 QByteArray("%PDF-1.7 report.final.DOCX\n"));
    }

    void namesMayHoldAnything_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"-o.docx", "a b.docx", "报告.docx", "$(touch x).docx", "a'\".docx",
                                 "%1%20.docx", ".docx", "line\nbreak.docx", "*.docx"})
            QTest::newRow(name) << QString::fromUtf8(name);
    }

    void namesMayHoldAnything()
    {
        QFETCH(QString, name);
        const Printer printer(works);
        const QString pdf = programs::printDocument(printer.machine(), printer.document(name));
        QCOMPARE(pdf, printer.pdf(QFileInfo(name).baseName() + QStringLiteral(".pdf")));
        QVERIFY(QFile::exists(pdf));
    }

    void theConverterHasAPrivateProfileAndACopyOfTheDocument()
    {
        const Printer printer("printf '%s\\n' \"$@\" > \"$OUT\"\n"
                              "profile=${1#-env:UserInstallation=file://}\n"
                              "cp \"$profile/user/registrymodifications.xcu\" \"$OUT.profile\"\n" +
                              works);
        const QString document = printer.document(QStringLiteral("report.docx"));
        programs::printDocument(printer.machine(), document);
        const QList<QByteArray> words = testsupport::readFile(printer.path("out")).split('\n');
        const QByteArray work = QFile::encodeName(printer.pdf(QStringLiteral("print-")));
        QVERIFY(words.at(0).startsWith("-env:UserInstallation=file://" + work));
        QVERIFY(words.at(words.size() - 2).startsWith(work));
        QVERIFY(testsupport::readFile(printer.path("out.profile"))
                    .contains("DisableMacrosExecution\" oor:op=\"fuse\"><value>true"));
    }

    void nothingButThePdfIsLeft()
    {
        const Printer printer(works);
        programs::printDocument(printer.machine(), printer.document(QStringLiteral("a.docx")));
        QCOMPARE(printer.left(), QStringList(QStringLiteral("a.pdf")));
    }

    void failuresLeaveNoPdfNotEvenAnEarlierOne_data()
    {
        QTest::addColumn<QByteArray>("converter");
        QTest::newRow("says nothing and makes nothing") << QByteArray("exit 0");
        QTest::newRow("fails") << QByteArray("echo 'no way' >&2; exit 1");
        QTest::newRow("fails with a PDF") << QByteArray(works + "exit 1");
        QTest::newRow("crashes") << QByteArray("kill -SEGV $$");
        QTest::newRow("makes no PDF") << QByteArray("echo text > \"${out}/a.pdf\"");
        QTest::newRow("makes an empty PDF") << QByteArray(": > \"${out}/a.pdf\"");
        QTest::newRow("makes several")
            << QByteArray(works + "cp \"${out}/a.pdf\" \"${out}/b.pdf\"");
    }

    void failuresLeaveNoPdfNotEvenAnEarlierOne()
    {
        QFETCH(QByteArray, converter);
        const Printer printer("out=$7\n" + converter);
        const QString document = printer.document(QStringLiteral("a.docx"));
        printer.write("home/.local/share/Orvane/tmp/a.pdf", "%PDF-1.7 earlier");
        QVERIFY_EXCEPTION_THROWN(programs::printDocument(printer.machine(), document),
                                 std::runtime_error);
        QCOMPARE(printer.left(), QStringList());
    }

    void aConverterThatHangsIsEndedWithAllThatItStarted()
    {
        const Printer printer("sleep 600 & wait");
        const QString document = printer.document(QStringLiteral("a.docx"));
        testsupport::Lifeline lifeline;
        QVERIFY_EXCEPTION_THROWN(programs::printDocument(printer.machine(), document, 1000),
                                 std::runtime_error);
        QCOMPARE(printer.left(), QStringList());
        QVERIFY(lifeline.areAllGone());
    }

    void aPrintThatIsEndedWithItsSessionTakesTheConverterAlong_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGHUP") << SIGHUP;
    }

    void aPrintThatIsEndedWithItsSessionTakesTheConverterAlong()
    {
        QFETCH(int, signal);
        testsupport::Lifeline lifeline;
        const Printer printer("sleep 600 & echo started > /proc/self/fd/" +
                              QByteArray::number(lifeline.descriptor()) + "; wait");
        QProcess tool;
        QProcessEnvironment environment = printer.machine().environment;
        environment.insert(QStringLiteral("HELIO_SUITE_HOME"), printer.machine().suiteHome);
        tool.setProcessEnvironment(environment);
        tool.start(QStringLiteral(SUITE_OFFICE_DIR "/vyrEnvCheckTool"),
                   {QStringLiteral("print"), QStringLiteral("vyr"),
                    printer.document(QStringLiteral("a.docx"))});
        QVERIFY(lifeline.hasSign());
        QCOMPARE(::kill(static_cast<pid_t>(tool.processId()), signal), 0);
        QVERIFY(tool.waitForFinished(testsupport::longestWaitMs));
        QCOMPARE(tool.exitStatus(), QProcess::CrashExit);
        QVERIFY(lifeline.areAllGone());
    }

    void withoutAnOfficeSuiteThatIsSaid()
    {
        Printer printer(works);
        printer.remove("bin/soffice");
        const QString document = printer.document(QStringLiteral("a.docx"));
        printer.write("home/.local/share/Orvane/tmp/a.pdf", "%PDF-1.7 earlier");
        try {
            programs::printDocument(printer.machine(), document);
            QFAIL("it was printed");
        } catch (const std::runtime_error &error) {
            QVERIFY(QByteArray(error.what()).startsWith("no office suite"));
        }
        QCOMPARE(printer.left(), QStringList());
    }

    void whatIsNoDocumentIsRefusedAndLeavesNoPdf_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("kind");
        QTest::newRow("garbage") << QByteArray("\x01\xFF garbage").repeated(1000) << int(File);
        QTest::newRow("zeros") << QByteArray(1000, '\0') << int(File);
        QTest::newRow("absent") << QByteArray() << int(Absent);
        QTest::newRow("a directory") << QByteArray() << int(Directory);
        QTest::newRow("a pipe") << QByteArray() << int(Pipe);
    }

    void whatIsNoDocumentIsRefusedAndLeavesNoPdf()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, kind);
        const Printer printer(works);
        const QString path = printer.path("a.docx");
        if (kind == File)
            printer.write("a.docx", content);
        if (kind == Directory)
            QVERIFY(QDir().mkpath(path));
        if (kind == Pipe)
            QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        printer.write("home/.local/share/Orvane/tmp/a.pdf", "%PDF-1.7 earlier");
        QVERIFY_EXCEPTION_THROWN(programs::printDocument(printer.machine(), path),
                                 std::runtime_error);
        QCOMPARE(printer.left(), QStringList());
    }

    void aDocumentInThePlaceOfThePdfStaysAsItIs()
    {
        const Printer printer(works);
        const QString document =
            printer.write("home/.local/share/Orvane/tmp/a.pdf", "%PDF-1.7 precious");
        QVERIFY_EXCEPTION_THROWN(programs::printDocument(printer.machine(), document),
                                 std::runtime_error);
        QCOMPARE(testsupport::readFile(document), QByteArray("%PDF-1.7 precious"));
    }

    void workOfAPrintThatWasEndedIsClearedAwayLater()
    {
        const Printer printer(works);
        const QString old =
            printer.write("home/.local/share/Orvane/tmp/print-old/x", "x").chopped(2);
        printer.write("home/.local/share/Orvane/tmp/print-new/x", "x");
        const utimbuf longAgo = {1000000000, 1000000000};
        QCOMPARE(utime(QFile::encodeName(old).constData(), &longAgo), 0);
        programs::printDocument(printer.machine(), printer.document(QStringLiteral("a.docx")));
        QCOMPARE(printer.left(),
                 (QStringList{QStringLiteral("a.pdf"), QStringLiteral("print-new")}));
    }

private:
    enum Kind {
        File,
        Absent,
        Directory,
        Pipe
    };

    /// A machine whose office suite is a script for sh, which may write to the file "$OUT".
    class Printer
    {
    public:
        explicit Printer(const QByteArray &converter)
        {
            m_checked.writeProgram(QStringLiteral("bin/soffice"), "#!/bin/sh\n" + converter + '\n');
            m_checked.set("PATH",
                          m_checked.path(QStringLiteral("bin")) + QStringLiteral(":/usr/bin:/bin"));
            m_checked.set("OUT", path("out"));
            m_checked.makeDirectory(QStringLiteral("home/.local/share/Orvane/tmp"));
        }

        const programs::Machine &machine() const { return m_checked.machine; }
        QString path(const char *name) const { return m_checked.path(QString::fromLatin1(name)); }
        QString write(const char *name, const QByteArray &content) const
        {
            return m_checked.write(QString::fromLatin1(name), content);
        }
        /// Removes the fake office suite and hides the machine's own.
        void remove(const char *program)
        {
            m_checked.set("PATH", path("bin"));
            QVERIFY(QFile::remove(path(program)));
        }
        QString document(const QString &name) const
        {
            return m_checked.write(QStringLiteral("documents/") + name, "text");
        }
        QString pdf(const QString &name) const
        {
            return machine().suiteHome + QStringLiteral("/tmp/") + name;
        }
        QStringList left() const
        {
            return QDir(pdf({})).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        }

    private:
        CheckedMachine m_checked;
    };
};

HEADLESS_TEST_MAIN(PrintingTest)
#include "tst_printing.moc"
