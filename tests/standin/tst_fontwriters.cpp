#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "tests/support/documentfamilies.h"
#include "tests/support/headlesstest.h"

namespace {

const QByteArray webPage =
    "<html><head><meta charset=\"utf-8\"></head><body>"
    "<p style=\"font-family: 'First Test Family'\">Text in one font</p>"
    "<p style=\"font-family: 'Second Test Family'\">and in another.</p>"
    "<p><font face=\"Third Test Family\">The third.</font></p></body></html>";

const char *pythonScript = R"(
import sys, docx
from docx.oxml.ns import qn
document = docx.Document()
run = document.add_paragraph().add_run('Text in one font 文')
run.font.name = 'First Test Family'
run._element.rPr.rFonts.set(qn('w:eastAsia'), 'Asian Test Family')
empty = document.add_paragraph().add_run('')
empty.font.name = 'Unused Test Family'
document.sections[0].header.paragraphs[0].add_run('Heading').font.name = 'Second Test Family'
style = document.styles.add_style('Mine', 1)
style.font.name = 'Third Test Family'
document.add_paragraph('In a style', style='Mine')
document.save(sys.argv[1])
)";

/// Debian's, for which python3-docx is installed; another may come first in the path.
const QString python3 = QStringLiteral("/usr/bin/python3");

} // namespace

/// Documents as other programs write them.
class FontWritersTest : public QObject
{
    Q_OBJECT

private slots:
    void documentsOfPythonDocx()
    {
        const QString path = m_directory.filePath(QStringLiteral("python.docx"));
        QProcess python;
        python.start(python3,
                     {QStringLiteral("-c"), QStringLiteral("import docx")});
        if (!python.waitForFinished(30000) || python.exitCode() != 0)
            QSKIP("python3-docx is not installed");
        python.start(python3,
                     {QStringLiteral("-c"), QString::fromUtf8(pythonScript), path});
        QVERIFY(python.waitForFinished(60000));
        QCOMPARE(python.readAllStandardError(), QByteArray());
        QCOMPARE(testFamilies(path), (QStringList{QStringLiteral("Asian Test Family"),
                                                  QStringLiteral("First Test Family"),
                                                  QStringLiteral("Second Test Family"),
                                                  QStringLiteral("Third Test Family")}));
    }

    void documentsOfLibreOffice_data()
    {
        QTest::addColumn<QString>("suffix");
        for (const char *suffix : {"docx", "rtf", "doc", "xlsx", "xls"})
            QTest::newRow(suffix) << QString::fromLatin1(suffix);
    }

    void documentsOfLibreOffice()
    {
        QFETCH(QString, suffix);
        const bool isSheet = suffix.startsWith(QLatin1String("xls"));
        const QString program = QStandardPaths::findExecutable(QStringLiteral("soffice"));
        if (program.isEmpty())
            QSKIP("LibreOffice is not installed");
        const QString source = m_directory.filePath(QStringLiteral("source.html"));
        QFile file(source);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(webPage);
        file.close();
        QProcess office;
        office.start(program, {QStringLiteral("-env:UserInstallation=file://") +
                                   m_directory.filePath(QStringLiteral("p")),
                               QStringLiteral("--headless"),
                               QStringLiteral("--infilter=") +
                                   (isSheet ? QStringLiteral("HTML (StarCalc)")
                                            : QStringLiteral("HTML (StarWriter)")),
                               QStringLiteral("--convert-to"), suffix, QStringLiteral("--outdir"),
                               m_directory.path(), source});
        QVERIFY(office.waitForFinished(110000));
        QCOMPARE(
            testFamilies(m_directory.filePath(QStringLiteral("source.") + suffix)),
            (QStringList{QStringLiteral("First Test Family"), QStringLiteral("Second Test Family"),
                         QStringLiteral("Third Test Family")}));
    }

private:
    /// The families of the test's own; writers add fonts for what they put there themselves.
    static QStringList testFamilies(const QString &path)
    {
        QStringList families;
        const QStringList all = testsupport::documentFamilies(path);
        for (const QString &family : all) {
            const QString name = family.section(QLatin1Char(';'), 0, 0);
            if (name.contains(QLatin1String("Test Family")) ||
                name.startsWith(QLatin1String("error")))
                families.append(name);
        }
        return families;
    }

    QTemporaryDir m_directory;
};

HEADLESS_TEST_MAIN(FontWritersTest)
#include "tst_fontwriters.moc"
