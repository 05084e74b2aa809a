#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "programs/process/boundedprogram.h"
#include "tests/programs/missingfonts/documentfamilies.h"
#include "tests/programs/missingfonts/packagebuilder.h"
#include "tests/support/shell/headlesstest.h"

namespace {

const char *const families[] = {"First Test Family", "Second Test Family", "Third Test Family"};

/// The content of an OpenDocument file; @p styleFamily and @p content are what its kind needs, and
/// in the content "%1" stands for the name of a style.
QByteArray contentOf(const QByteArray &kind, const QByteArray &styleFamily,
                     const QByteArray &before, const QByteArray &content, const QByteArray &after)
{
    QByteArray fonts;
    QByteArray styles;
    QByteArray body;
    for (const QByteArray family : families) {
        const QByteArray name = family.left(1);
        fonts +=
            "<style:font-face style:name=\"" + family + "\" svg:font-family=\"'" + family + "'\"/>";
        styles += "<style:style style:name=\"" + name + "\" style:family=\"" + styleFamily +
                  "\"><style:text-properties style:font-name=\"" + family + "\"/></style:style>";
        body += QByteArray(content).replace("%1", name);
    }
    const QByteArray address = "urn:oasis:names:tc:opendocument:xmlns:";
    QByteArray namespaces = " xmlns:svg=\"" + address + "svg-compatible:1.0\"";
    for (const QByteArray prefix : {"office", "style", "text", "table"})
        namespaces += " xmlns:" + prefix + "=\"" + address + prefix + ":1.0\"";
    namespaces += " xmlns:draw=\"" + address + "drawing:1.0\"";
    return "<office:document-content" + namespaces +
           " office:version=\"1.2\"><office:font-face-decls>" + fonts +
           "</office:font-face-decls><office:automatic-styles>" + styles +
           "</office:automatic-styles><office:body><office:" + kind + ">" + before + body + after +
           "</office:" + kind + "></office:body></office:document-content>";
}

void writeOpenDocument(const QString &path, const QByteArray &kind, const QByteArray &content)
{
    const QByteArray type = "application/vnd.oasis.opendocument." + kind;
    const QByteArray entry = "<manifest:file-entry manifest:media-type=\"";
    testsupport::PackageBuilder package;
    package.add(QStringLiteral("mimetype"), type);
    package.add(QStringLiteral("content.xml"), content);
    package.add(
        QStringLiteral("META-INF/manifest.xml"),
        "<manifest:manifest xmlns:manifest=\"urn:oasis:names:tc:opendocument:xmlns:manifest:"
        "1.0\">" +
            entry + type + "\" manifest:full-path=\"/\"/>" + entry +
            "text/xml\" manifest:full-path=\"content.xml\"/></manifest:manifest>");
    package.write(path);
}

QByteArray textDocument()
{
    return contentOf("text", "text", {},
                     "<text:p><text:span text:style-name=\"%1\">Text</text:span></text:p>", {});
}

QByteArray spreadsheet()
{
    return contentOf("spreadsheet", "table-cell", "<table:table table:name=\"T\">",
                     "<table:table-row><table:table-cell table:style-name=\"%1\""
                     " office:value-type=\"string\"><text:p>Text</text:p></table:table-cell>"
                     "</table:table-row>",
                     "</table:table>");
}

QByteArray presentation()
{
    return contentOf("presentation", "text", "<draw:page>",
                     "<draw:frame svg:width=\"5cm\" svg:height=\"2cm\"><draw:text-box>"
                     "<text:p><text:span text:style-name=\"%1\">Text</text:span></text:p>"
                     "</draw:text-box></draw:frame>",
                     "</draw:page>");
}

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
        const programs::ProgramEnd module =
            run(python3, {QStringLiteral("-c"), QStringLiteral("import docx")});
        if (module.kind == programs::ProgramEnd::Kind::NotStarted ||
            module.errors.contains("ModuleNotFoundError"))
            QSKIP("python3-docx is not installed");
        const programs::ProgramEnd end =
            run(python3, {QStringLiteral("-c"), QString::fromUtf8(pythonScript), path});
        QVERIFY2(end.hasSucceeded(), end.errors.constData());
        QCOMPARE(testFamilies(path), (QStringList{QStringLiteral("Asian Test Family"),
                                                  QStringLiteral("First Test Family"),
                                                  QStringLiteral("Second Test Family"),
                                                  QStringLiteral("Third Test Family")}));
    }

    void documentsOfLibreOffice_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QByteArray>("kind");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("suffix");
        for (const char *suffix : {"docx", "rtf", "doc"})
            QTest::newRow(suffix) << QStringLiteral("odt") << QByteArray("text") << textDocument()
                                  << QString::fromLatin1(suffix);
        for (const char *suffix : {"xlsx", "xls"})
            QTest::newRow(suffix) << QStringLiteral("ods") << QByteArray("spreadsheet")
                                  << spreadsheet() << QString::fromLatin1(suffix);
        for (const char *suffix : {"pptx", "ppt"})
            QTest::newRow(suffix) << QStringLiteral("odp") << QByteArray("presentation")
                                  << presentation() << QString::fromLatin1(suffix);
    }

    void documentsOfLibreOffice()
    {
        QFETCH(QString, source);
        QFETCH(QByteArray, kind);
        QFETCH(QByteArray, content);
        QFETCH(QString, suffix);
        const QString program = QStandardPaths::findExecutable(QStringLiteral("soffice"));
        if (program.isEmpty())
            QSKIP("LibreOffice is not installed");
        const QString sourcePath = m_directory.filePath(QStringLiteral("source.") + source);
        writeOpenDocument(sourcePath, kind, content);
        const programs::ProgramEnd end =
            run(program, {QStringLiteral("-env:UserInstallation=file://") +
                              m_directory.filePath(QStringLiteral("profile")),
                          QStringLiteral("--headless"), QStringLiteral("--convert-to"), suffix,
                          QStringLiteral("--outdir"), m_directory.path(), sourcePath});
        QVERIFY2(end.hasSucceeded(), end.errors.constData());
        QCOMPARE(
            testFamilies(m_directory.filePath(QStringLiteral("source.") + suffix)),
            (QStringList{QStringLiteral("First Test Family"), QStringLiteral("Second Test Family"),
                         QStringLiteral("Third Test Family")}));
    }

private:
    /// LibreOffice is several processes, which all end when its time is over. A busy machine may
    /// need a minute for its first start.
    static programs::ProgramEnd run(const QString &program, const QStringList &arguments)
    {
        constexpr int longestMs = 240000;
        return programs::runBounded(program, arguments, QProcessEnvironment::systemEnvironment(),
                                    longestMs);
    }

    /// The families of the test's own; writers add fonts for what they put there themselves.
    static QStringList testFamilies(const QString &path)
    {
        QStringList found;
        const QStringList all = testsupport::documentFamilies(path);
        for (const QString &family : all) {
            const QString name = family.section(QLatin1Char(';'), 0, 0);
            if (name.contains(QLatin1String("Test Family")) ||
                name.startsWith(QLatin1String("error")))
                found.append(name);
        }
        return found;
    }

    QTemporaryDir m_directory;
};

HEADLESS_TEST_MAIN(FontWritersTest)
#include "tst_fontwriters.moc"
