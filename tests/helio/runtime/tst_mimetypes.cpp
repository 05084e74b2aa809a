#include <QDir>
#include <QMimeDatabase>
#include <QProcess>

#include "helio/runtime/mimepackage.h"
#include "tests/support/shell/headlesstest.h"

/// The suite's MIME types as Qt sees them once the shell's package is installed.
class MimeTypesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        helio::offerMimePackage();
        const auto &home = testsupport::PrivateHome::current();
        home.writeFile(QStringLiteral(".local/share/mime/packages/Override.xml"),
                       testsupport::readFile(QStringLiteral(":/config/Override.xml")));
        QCOMPARE(QProcess::execute(QStringLiteral("update-mime-database"),
                                   {home.path() + QStringLiteral("/.local/share/mime")}),
                 0);
    }

    void everySampleHasItsType()
    {
        const QDir samples(QStringLiteral(SUITE_OFFICE_DIR "/asso_template"));
        const QFileInfoList files = samples.entryInfoList(QDir::Files);
        QCOMPARE(files.size(), 39);
        const QMimeDatabase database;
        for (const QFileInfo &file : files)
            QCOMPARE(database.mimeTypeForFile(file).name(),
                     QStringLiteral("application/vyr-office.") + file.suffix());
    }

    void aTypeDerivesFromTheOneThatItStandsInFor()
    {
        const QMimeDatabase database;
        QVERIFY(database.mimeTypeForName(QStringLiteral("application/vyr-office.docx"))
                    .inherits(QStringLiteral("application/vnd.openxmlformats-officedocument."
                                             "wordprocessingml.document")));
        QVERIFY(database.mimeTypeForName(QStringLiteral("application/vyr-office.dot"))
                    .inherits(QStringLiteral("application/msword")));
    }
};

HEADLESS_TEST_MAIN(MimeTypesTest)
#include "tst_mimetypes.moc"
