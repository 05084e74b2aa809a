#include "document/suiteapplication.h"

#include <QTest>

using OfficeAssiant::applicationFor;

/// Which component of the suite opens a document.
class SuiteApplicationTest : public QObject
{
    Q_OBJECT

private:
    static QString executableFor(const QString &path)
    {
        const auto application = applicationFor(path);
        return application ? application->executable : QString();
    }

private slots:
    void everySuffixHasItsComponent_data()
    {
        QTest::addColumn<QString>("executable");
        QTest::addColumn<QString>("missingFontFile");
        QTest::addColumn<QString>("suffixes");
        QTest::newRow("writer") << QStringLiteral("vyr") << QStringLiteral("vyrmissfonts.ini")
                                << QStringLiteral("vyr vyt doc dot docx dotx docm dotm");
        QTest::newRow("spreadsheet") << QStringLiteral("tbl") << QStringLiteral("tblmissfonts.ini")
                                     << QStringLiteral("tbl tbt xls xlt xlsx xlsm xltx xltm xlsb");
        QTest::newRow("presentation") << QStringLiteral("shw") << QStringLiteral("shwmissfonts.ini")
                                      << QStringLiteral("shd sht ppt pps pot pptx ppsx potx");
    }

    void everySuffixHasItsComponent()
    {
        QFETCH(const QString, executable);
        QFETCH(const QString, missingFontFile);
        QFETCH(const QString, suffixes);
        for (const QString &suffix : suffixes.split(QLatin1Char(' '))) {
            const auto application = applicationFor(QStringLiteral("/home/user/a.") + suffix);
            QVERIFY2(application, qPrintable(suffix));
            QCOMPARE(application->executable, executable);
            QCOMPARE(application->missingFontFile, missingFontFile);
        }
    }

    void theCaseOfTheSuffixDoesNotMatter()
    {
        QCOMPARE(executableFor(QStringLiteral("/tmp/report.DOCX")), QStringLiteral("vyr"));
        QCOMPARE(executableFor(QStringLiteral("/tmp/sheet.xLs")), QStringLiteral("tbl"));
    }

    void onlyTheLastSuffixCounts()
    {
        QCOMPARE(executableFor(QStringLiteral("/tmp/report.final.DOCX")), QStringLiteral("vyr"));
        QCOMPARE(executableFor(QStringLiteral("/tmp/report.docx.bak")), QString());
        QCOMPARE(executableFor(QStringLiteral("/tmp.docx/report")), QString());
    }

    void otherFilesHaveNone()
    {
        for (const char *path : {"", "/tmp/report", "/tmp/report.", "/tmp/a.pdf", "/tmp/a.doc;dot",
                                 "/tmp/a.pptm", "/tmp/a.rtf"})
            QCOMPARE(executableFor(QLatin1String(path)), QString());
    }
};

QTEST_GUILESS_MAIN(SuiteApplicationTest)
#include "tst_suiteapplication.moc"
