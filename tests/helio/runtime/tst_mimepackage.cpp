#include "helio/runtime/mimepackage.h"

#include <QFile>
#include <QProcess>
#include <QResource>
#include <QTest>
#include <QXmlStreamReader>

#include "tests/support/shell/headlesstest.h"

namespace {

const QString packageResource = QStringLiteral(":/config/Override.xml");

} // namespace

/// The package of MIME types that the shell offers for the repair of file associations.
class MimePackageTest : public QObject
{
    Q_OBJECT

private:
    /// Makes a resource file with another package of types.
    static QString otherModulesResource()
    {
        const auto &home = testsupport::PrivateHome::current();
        home.writeFile(QStringLiteral("Override.xml"), "<other/>\n");
        const QString list = home.writeFile(QStringLiteral("other.qrc"),
                                            "<RCC><qresource prefix=\"/config\">"
                                            "<file>Override.xml</file></qresource></RCC>");
        QString collection = home.path() + QStringLiteral("/other.rcc");
        const QString compiler = QStringLiteral(RESOURCE_COMPILER);
        if (QProcess::execute(compiler, {QStringLiteral("--binary"), list, QStringLiteral("-o"),
                                         collection}) != 0)
            qFatal("%s failed", qPrintable(compiler));
        return collection;
    }

private slots:
    void everySuffixHasATypeOfTheSuitesThatOutweighsAllOthers()
    {
        helio::offerMimePackage();
        QFile file(packageResource);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QXmlStreamReader package(&file);
        QStringList found;
        QString type;
        while (!package.atEnd()) {
            package.readNext();
            if (!package.isStartElement())
                continue;
            const QXmlStreamAttributes attributes = package.attributes();
            if (package.name() == QLatin1String("mime-type"))
                type = attributes.value(QLatin1String("type")).toString();
            if (package.name() != QLatin1String("glob"))
                continue;
            const QString pattern = attributes.value(QLatin1String("pattern")).toString();
            found.append(pattern.mid(2));
            QCOMPARE(type, QStringLiteral("application/vyr-office.") + pattern.mid(2));
            QCOMPARE(attributes.value(QLatin1String("weight")).toString(), QStringLiteral("100"));
        }
        QVERIFY2(!package.hasError(), qPrintable(package.errorString()));
        QCOMPARE(found, QStringLiteral(DOCUMENT_SUFFIXES).split(QLatin1Char(' ')));
    }

    void offeringItTwiceLeavesOne()
    {
        helio::offerMimePackage();
        helio::offerMimePackage();
        QVERIFY(QFile::exists(packageResource));
    }

    void anotherModulesPackageGoesFirst()
    {
        const QString other = otherModulesResource();
        QVERIFY(QResource::registerResource(other));
        helio::offerMimePackage();
        QCOMPARE(testsupport::readFile(packageResource), QByteArray("<other/>\n"));
        QVERIFY(QResource::unregisterResource(other));
        helio::offerMimePackage();
        QVERIFY(testsupport::readFile(packageResource).contains("application/vyr-office.docx"));
    }
};

HEADLESS_TEST_MAIN(MimePackageTest)
#include "tst_mimepackage.moc"
