#include <QTemporaryDir>

#include "tests/programs/missingfonts/documentfamilies.h"
#include "tests/programs/missingfonts/packagebuilder.h"
#include "tests/support/shell/headlesstest.h"

/// The fonts of workbooks that are packages.
class SheetFontsTest : public QObject
{
    Q_OBJECT

private slots:
    void onlyFontsOfFilledCellsCount()
    {
        QCOMPARE(familiesOf("<s:c s=\"1\" t=\"s\"><s:v>0</s:v></s:c><s:c s=\"2\"/>"),
                 QStringList{QStringLiteral("First")});
        QCOMPARE(familiesOf("<s:c s=\"2\"><s:v>4.5</s:v></s:c>"),
                 QStringList{QStringLiteral("Second")});
        QCOMPARE(familiesOf("<s:c s=\"2\" t=\"inlineStr\"><s:is><s:t>x</s:t></s:is></s:c>"),
                 QStringList{QStringLiteral("Second")});
        QCOMPARE(familiesOf("<s:c s=\"2\" t=\"s\"><s:v>2</s:v></s:c>"), QStringList());
        QCOMPARE(familiesOf("<s:c s=\"99\"><s:v>1</s:v></s:c>"), QStringList());
    }

    void runsOfASharedTextHaveTheirOwnFonts()
    {
        // The whole text is in a font of its own, so the cell's is not used.
        QCOMPARE(familiesOf("<s:c s=\"1\" t=\"s\"><s:v>1</s:v></s:c>", richStrings),
                 QStringList{QStringLiteral("Rich")});
    }

    void themeFontsAreResolved()
    {
        QCOMPARE(familiesOf("<s:c s=\"3\"><s:v>1</s:v></s:c>"),
                 QStringList{QStringLiteral("Body")});
        // The writer chose the theme's font for its language.
        QCOMPARE(familiesOf("<s:c s=\"4\"><s:v>1</s:v></s:c>"), QStringList{QStringLiteral("汉")});
    }

    void aSchemeWithoutANameIsTheThemesFont()
    {
        QCOMPARE(familiesOf("<s:c s=\"5\"><s:v>1</s:v></s:c>"),
                 QStringList{QStringLiteral("Body")});
    }

    void headingsOfThePrintedPageNameFonts_data()
    {
        QTest::addColumn<QByteArray>("heading");
        QTest::addColumn<QStringList>("families");
        const QString own = QStringLiteral("Default");
        const QString head = QStringLiteral("Head");
        QTest::newRow("named") << QByteArray("&C&\"Head,Bold\"Title") << QStringList{head};
        QTest::newRow("none named") << QByteArray("Title") << QStringList{own};
        QTest::newRow("the workbook's own")
            << QByteArray("&\"Head,Bold\"&\"-,Italic\"Title") << QStringList{own};
        QTest::newRow("text before it") << QByteArray("a&\"Head,Bold\"b") << QStringList{own, head};
        QTest::newRow("only in its section")
            << QByteArray("&L&\"Head,Bold\"b&R&P") << QStringList{own, head};
        QTest::newRow("fields are text") << QByteArray("&\"Head,Bold\"&12&A") << QStringList{head};
        QTest::newRow("formats and pictures are none")
            << QByteArray("&L&B&24&K01+049&KFF0000&C&G\n&R&\"Head,Bold\"") << QStringList{};
        QTest::newRow("an ampersand") << QByteArray("&&\"Head,Bold\"") << QStringList{own};
        QTest::newRow("not closed") << QByteArray("&\"Head,Bold") << QStringList{};
        QTest::newRow("an ampersand at the end") << QByteArray("&\"Head\"&") << QStringList{};
    }

    void headingsOfThePrintedPageNameFonts()
    {
        QFETCH(QByteArray, heading);
        const QByteArray escaped = heading.replace('&', "&amp;");
        QTEST(familiesOf({}, {},
                         "<s:headerFooter><s:oddHeader>" + escaped +
                             "</s:oddHeader></s:headerFooter>"),
              "families");
    }

    void chartsOfASheetCount()
    {
        m_package = testsupport::PackageBuilder();
        m_package.relate(QStringLiteral("xl/worksheets/sheet1.xml"), QStringLiteral("drawing"),
                         QStringLiteral("../drawings/d.xml"));
        m_package.relate(QStringLiteral("xl/drawings/d.xml"), QStringLiteral("chart"),
                         QStringLiteral("../charts/c.xml"));
        m_package.addXml(QStringLiteral("xl/drawings/d.xml"),
                         "<d><a:p><a:r><a:rPr><a:latin typeface=\"Box\"/></a:rPr><a:t>x</a:t></a:r>"
                         "</a:p></d>");
        m_package.addXml(QStringLiteral("xl/charts/c.xml"),
                         "<c:chartSpace><c:txPr><a:p><a:pPr><a:defRPr><a:latin"
                         " typeface=\"Axis\"/></a:defRPr></a:pPr></a:p></c:txPr></c:chartSpace>");
        QCOMPARE(familiesOf({}), (QStringList{QStringLiteral("Axis"), QStringLiteral("Box")}));
        m_package = testsupport::PackageBuilder();
    }

    void binaryWorkbooksAreRead()
    {
        testsupport::PackageBuilder package;
        package.relate({}, QStringLiteral("officeDocument"), QStringLiteral("xl/workbook.bin"));
        package.relate(QStringLiteral("xl/workbook.bin"), QStringLiteral("styles"),
                       QStringLiteral("styles.bin"));
        package.relate(QStringLiteral("xl/workbook.bin"), QStringLiteral("worksheet"),
                       QStringLiteral("sheet.bin"));
        package.add(QStringLiteral("xl/workbook.bin"), record(131, {}));
        package.add(QStringLiteral("xl/styles.bin"),
                    record(43, binaryFont(QStringLiteral("Unused"))) +
                        record(43, binaryFont(QStringLiteral("Binary"))) +
                        record(617, QByteArray(4, '\0')) + record(47, QByteArray(16, '\0')) +
                        record(47, QByteArray("\0\0\0\0\1\0", 6) + QByteArray(10, '\0')) +
                        record(618, {}));
        // A number in a cell of the second format.
        package.add(QStringLiteral("xl/sheet.bin"),
                    record(2, QByteArray("\0\0\0\0\1\0\0\0\0\0\0\0", 12)) +
                        record(479, binaryHeadings()));
        const QString path = m_directory.filePath(QStringLiteral("book.xlsb"));
        package.write(path);
        QCOMPARE(testsupport::documentFamilies(path),
                 (QStringList{QStringLiteral("Binary"), QStringLiteral("Head")}));
    }

private:
    const QByteArray plainStrings = "<s:si><s:t>text</s:t></s:si><s:si><s:t>more</s:t></s:si>"
                                    "<s:si><s:t></s:t></s:si>";
    const QByteArray richStrings =
        "<s:si><s:t>text</s:t></s:si><s:si><s:r><s:rPr><s:rFont val=\"Rich\"/></s:rPr><s:t>x</s:t>"
        "</s:r><s:rPh><s:t>reading</s:t></s:rPh></s:si>";

    static QByteArray record(int type, const QByteArray &content)
    {
        QByteArray head;
        if (type < 128)
            head.append(char(type));
        else
            head.append(char((type & 0x7F) | 0x80)).append(char(type >> 7));
        return head + char(content.size()) + content;
    }

    static QByteArray binaryFont(const QString &name)
    {
        QByteArray content(21, '\0');
        content.append(char(name.size())).append(3, '\0');
        for (const QChar c : name)
            content.append(char(c.cell())).append(char(c.row()));
        return content;
    }

    /// The second of six headings; the others are not there.
    static QByteArray binaryHeadings()
    {
        QByteArray content = QByteArray(2, '\0') + QByteArray(4, '\xFF');
        const QString heading = QStringLiteral("&\"Head,Bold\"x");
        content.append(char(heading.size())).append(3, '\0');
        for (const QChar c : heading)
            content.append(char(c.cell())).append(char(c.row()));
        return content + QByteArray(16, '\xFF');
    }

    QStringList familiesOf(const QByteArray &cells, const QByteArray &strings = {},
                           const QByteArray &afterwards = {})
    {
        testsupport::PackageBuilder package = m_package;
        const QString book = QStringLiteral("xl/workbook.xml");
        package.relate({}, QStringLiteral("officeDocument"), book);
        package.relate(book, QStringLiteral("worksheet"), QStringLiteral("worksheets/sheet1.xml"));
        package.relate(book, QStringLiteral("styles"), QStringLiteral("styles.xml"));
        package.relate(book, QStringLiteral("sharedStrings"), QStringLiteral("sharedStrings.xml"));
        package.relate(book, QStringLiteral("theme"), QStringLiteral("theme/theme1.xml"));
        package.addXml(book, "<s:workbook/>");
        // As spreadsheets are written: the texts behind the cells that show them.
        package.addXml(QStringLiteral("xl/worksheets/sheet1.xml"),
                       "<s:worksheet><s:sheetData><s:row>" + cells + "</s:row></s:sheetData>" +
                           afterwards + "</s:worksheet>");
        package.addXml(QStringLiteral("xl/sharedStrings.xml"),
                       "<s:sst>" + (strings.isEmpty() ? plainStrings : strings) + "</s:sst>");
        package.addXml(
            QStringLiteral("xl/styles.xml"),
            "<s:styleSheet><s:fonts><s:font><s:name val=\"Default\"/></s:font><s:font><s:name"
            " val=\"First\"/></s:font><s:font><s:name val=\"Second\"/></s:font><s:font><s:name"
            " val=\"Old\"/><s:scheme val=\"minor\"/></s:font><s:font><s:name val=\"汉\"/><s:scheme"
            " val=\"minor\"/></s:font><s:font><s:scheme "
            "val=\"minor\"/></s:font></s:fonts><s:cellStyleXfs><s:xf fontId=\"0\"/>"
            "</s:cellStyleXfs><s:cellXfs><s:xf fontId=\"0\"/><s:xf fontId=\"1\"/><s:xf"
            " fontId=\"2\"/><s:xf fontId=\"3\"/><s:xf fontId=\"4\"/><s:xf "
            "fontId=\"5\"/></s:cellXfs></s:styleSheet>");
        package.addXml(QStringLiteral("xl/theme/theme1.xml"),
                       "<a:theme><a:fontScheme><a:minorFont><a:latin typeface=\"Body\"/><a:font"
                       " script=\"Hans\" typeface=\"汉\"/></a:minorFont></a:fontScheme></a:theme>");
        const QString path = m_directory.filePath(QStringLiteral("book.xlsx"));
        package.write(path);
        return testsupport::documentFamilies(path);
    }

    QTemporaryDir m_directory;
    testsupport::PackageBuilder m_package;
};

HEADLESS_TEST_MAIN(SheetFontsTest)
#include "tst_sheetfonts.moc"
