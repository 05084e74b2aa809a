#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>

#include <atomic>
#include <thread>
#include <vector>

#include "document/fontcomparison.h"
#include "plugin/config/scriptstaging.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"
#include "tests/support/shell/stagedscripts.h"
#include "tests/support/suiteprogram.h"

using testsupport::PrivateHome;
using testsupport::RecordingShell;
using testsupport::StagedScripts;
using testsupport::SuiteProgram;

/// A document's missing fonts, as the suite lists them.
class FontComparisonTest : public QObject
{
    Q_OBJECT

private:
    static QString answerFile(const char *name)
    {
        return PrivateHome::current().suiteHome() + QStringLiteral("/tmp/") + QLatin1String(name);
    }

    static QJsonObject compare(RecordingShell &shell, const QString &path)
    {
        return shell.call(
            QStringLiteral("comparefont"),
            {{QStringLiteral("filepath"), QString::fromLatin1(path.toUtf8().toBase64())}});
    }

    static QJsonObject error() { return {{QStringLiteral("result"), QStringLiteral("error")}}; }

    static QJsonObject fonts(const char *text)
    {
        return {{QStringLiteral("result"),
                 QJsonObject{{QStringLiteral("MissFonts"),
                              QString::fromLatin1(QByteArray(text).toBase64())}}}};
    }

    /// A suite program that answers with this line in its INI file.
    static QByteArray answering(const char *file, const QByteArray &line)
    {
        return "cat > \"$HOME/.local/share/Orvane/tmp/" + QByteArray(file) + "\" <<'END'\n" +
               "[vyrtool]\n" + line + "\nEND";
    }

    static QString document(const char *name)
    {
        return PrivateHome::current().writeFile(QLatin1String(name), "a document");
    }

private slots:
    void init()
    {
        QDir(PrivateHome::current().suiteHome()).mkpath(QStringLiteral("tmp"));
        for (const char *name : {"vyrmissfonts.ini", "tblmissfonts.ini", "shwmissfonts.ini"}) {
            QFile::remove(answerFile(name));
            QDir().rmdir(answerFile(name));
        }
    }

    void theArgumentIsDecodedUpToItsFirstZeroByte()
    {
        using OfficeAssiant::decodedDocumentPath;
        const auto encoded = [](const QByteArray &bytes) {
            return QString::fromLatin1(bytes.toBase64());
        };
        QCOMPARE(decodedDocumentPath(encoded("/tmp/字.docx")), QString::fromUtf8("/tmp/字.docx"));
        QCOMPARE(decodedDocumentPath(encoded(QByteArray("/tmp/a.docx\0.xlsx", 17))),
                 QStringLiteral("/tmp/a.docx"));
        QCOMPARE(decodedDocumentPath(QString()), QString());
    }

    void anArgumentThatIsNoBase64IsAnError()
    {
        RecordingShell shell;
        for (const char *argument : {"", "%%%", "a", "/tmp/report.docx", "====", "\xff\xfe"}) {
            QCOMPARE(shell.call(QStringLiteral("comparefont"),
                                {{QStringLiteral("filepath"), QString::fromLatin1(argument)}}),
                     error());
        }
        QCOMPARE(shell.call(QStringLiteral("comparefont")), error());
        QVERIFY(shell.events(QStringLiteral("started")).isEmpty());
    }

    void anUpperCaseSuffixIsAWritersDocument()
    {
        const SuiteProgram writer(QStringLiteral("vyr"),
                                  answering("vyrmissfonts.ini", "MissFonts=\"Arial, Times\""));
        RecordingShell shell;
        const QString path = document("report.DOCX");
        QCOMPARE(compare(shell, path), fonts("Arial, Times"));
        QCOMPARE(writer.calls(), (QList<QStringList>{{QStringLiteral("-savemissfont"), path}}));
        QVERIFY(QFile::exists(answerFile("vyrmissfonts.ini")));
    }

    void theScriptGetsSuiteFolderExecutableAndDocument()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("extractfont.sh"), "exit 0");
        RecordingShell shell;
        compare(shell, QStringLiteral("/tmp/b c.pptx"));
        const QJsonObject started = shell.events(QStringLiteral("started")).value(0);
        QCOMPARE(started.value(QLatin1String("program")).toString(), QStringLiteral("bash"));
        QCOMPARE(
            started.value(QLatin1String("arguments")).toArray(),
            (QJsonArray{OfficeAssiant::scriptStagingDirectory() + QStringLiteral("/extractfont.sh"),
                        QCoreApplication::applicationDirPath(), QStringLiteral("shw"),
                        QStringLiteral("/tmp/b c.pptx")}));
        QCOMPARE(started.value(QLatin1String("detached")).toBool(true), false);
    }

    void aDocumentWithoutASuffixIsAnErrorAndNothingRuns()
    {
        RecordingShell shell;
        QCOMPARE(compare(shell, document("report")), error());
        QVERIFY(shell.events(QStringLiteral("started")).isEmpty());
    }

    void withoutTheScriptTheAnswerIsAnError()
    {
        const StagedScripts scripts;
        scripts.makeImpossible();
        RecordingShell shell;
        QCOMPARE(compare(shell, document("a.docx")), error());
        QVERIFY(shell.events(QStringLiteral("started")).isEmpty());
    }

    void aStaleListIsDeletedBeforeTheRun()
    {
        PrivateHome::current().writeFile(QStringLiteral(".local/share/Orvane/tmp/vyrmissfonts.ini"),
                                         "[vyrtool]\nMissFonts=old\n");
        RecordingShell shell;
        QCOMPARE(compare(shell, document("a.docx")), error());
        QVERIFY(!QFile::exists(answerFile("vyrmissfonts.ini")));
    }

    void aFileWithoutTheKeyAnswersAnEmptyText()
    {
        const SuiteProgram writer(QStringLiteral("vyr"), answering("vyrmissfonts.ini", "Other=1"));
        RecordingShell shell;
        QCOMPARE(compare(shell, document("a.docx")), fonts(""));
    }

    void theSuitesExitStatusDoesNotCount()
    {
        const SuiteProgram sheets(QStringLiteral("tbl"),
                                  answering("tblmissfonts.ini", "MissFonts=Arial") + "\nexit 7");
        RecordingShell shell;
        QCOMPARE(compare(shell, document("a.xlsx")), fonts("Arial"));
    }

    void aSuiteThatCrashesBeforeItAnswersIsAnError()
    {
        const SuiteProgram sheets(QStringLiteral("tbl"), "kill -SEGV $$");
        RecordingShell shell;
        QCOMPARE(compare(shell, document("a.xlsx")), error());
    }

    void aMissingDocumentIsAnError()
    {
        const SuiteProgram writer(QStringLiteral("vyr"),
                                  answering("vyrmissfonts.ini", "MissFonts=Arial"));
        RecordingShell shell;
        QCOMPARE(compare(shell, QStringLiteral("/nowhere/a.docx")), error());
        QVERIFY(writer.calls().isEmpty());
    }

    void twoThatAskAtOnceGetTheirOwnAnswers()
    {
        const SuiteProgram writer(
            QStringLiteral("vyr"),
            "sleep 0.02; printf '[vyrtool]\\nMissFonts=%s\\n' \"${2##*/}\" "
            "> \"$HOME/.local/share/Orvane/tmp/vyrmissfonts.ini\"; sleep 0.02");
        std::atomic<int> wrong{0};
        std::vector<std::thread> asking;
        for (int number = 0; number < 8; ++number) {
            const QString name = QStringLiteral("font%1.doc").arg(number);
            const QString path = document(name.toLatin1().constData());
            asking.emplace_back([&wrong, name, path] {
                for (int round = 0; round < 3; ++round)
                    wrong += OfficeAssiant::missingFonts(path) != name;
            });
        }
        for (std::thread &thread : asking)
            thread.join();
        QCOMPARE(wrong.load(), 0);
    }

    void namesInTheLocalesEncodingAreRead()
    {
        const SuiteProgram writer(QStringLiteral("vyr"),
                                  answering("vyrmissfonts.ini", "MissFonts=宋体;黑体"));
        RecordingShell shell;
        // An unquoted ";" starts a comment in an INI file.
        QCOMPARE(compare(shell, document("a.doc")), fonts("宋体"));
    }

    void aListThatIsNoTextInTheLocalesEncodingStaysAsItWasRead()
    {
        const SuiteProgram writer(QStringLiteral("vyr"),
                                  answering("vyrmissfonts.ini", "MissFonts=a\xe9z"));
        RecordingShell shell;
        QCOMPARE(compare(shell, document("a.doc")), fonts("aéz"));
    }

    void aListThatIsTooLongIsAnError()
    {
        const SuiteProgram writer(QStringLiteral("vyr"),
                                  "truncate -s 17M \"$HOME/.local/share/Orvane/tmp/"
                                  "vyrmissfonts.ini\"");
        RecordingShell shell;
        QCOMPARE(compare(shell, document("a.doc")), error());
    }

    void garbageInTheAnswerIsAnEmptyText()
    {
        const SuiteProgram writer(
            QStringLiteral("vyr"),
            "head -c 300000 /dev/urandom > \"$HOME/.local/share/Orvane/tmp/vyrmissfonts.ini\"");
        RecordingShell shell;
        QCOMPARE(compare(shell, document("a.doc")), fonts(""));
    }

    void aDirectoryInPlaceOfTheAnswerStays()
    {
        QVERIFY(QDir().mkpath(answerFile("vyrmissfonts.ini")));
        RecordingShell shell;
        QCOMPARE(compare(shell, document("a.doc")), fonts(""));
        QVERIFY(QFileInfo(answerFile("vyrmissfonts.ini")).isDir());
    }
};

HEADLESS_TEST_MAIN(FontComparisonTest)
#include "tst_fontcomparison.moc"
