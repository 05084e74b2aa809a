#include <QTemporaryDir>

#include "tests/programs/missingfonts/documentfamilies.h"
#include "tests/support/shell/headlesstest.h"

/// The fonts of RTF documents.
class RtfFontsTest : public QObject
{
    Q_OBJECT

private slots:
    void documentsAreReadAsTheyAreWritten_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QStringList>("families");
        const QString zero = QStringLiteral("Zero");
        const QString one = QStringLiteral("One");
        const QString song = QStringLiteral("宋体");
        QTest::newRow("default font") << QByteArray("x") << QStringList{zero};
        QTest::newRow("a font of the run") << QByteArray("\\f1 x") << QStringList{one};
        QTest::newRow("only in its group") << QByteArray("{\\f1 }x") << QStringList{zero};
        QTest::newRow("plain goes back") << QByteArray("\\f1\\plain x") << QStringList{zero};
        QTest::newRow("no text") << QByteArray("{\\f1}") << QStringList{};
        QTest::newRow("nested") << QByteArray("{\\f1{{x}}}") << QStringList{one};
        QTest::newRow("Unicode in the East Asian font")
            << QByteArray("\\loch\\af0\\hich\\af0\\dbch\\af2\\loch\\f1 \\u25991?")
            << QStringList{song};
        QTest::newRow("Latin beside it")
            << QByteArray("\\loch\\af0\\hich\\af0\\dbch\\af2\\loch\\f1 x") << QStringList{one};
        QTest::newRow("current East Asian run")
            << QByteArray("\\loch\\af0\\hich\\af0\\dbch\\f2 \\u25991?") << QStringList{song};
        QTest::newRow("replacement is not text")
            << QByteArray("\\uc2\\f1\\u25991??") << QStringList{one};
        QTest::newRow("replacement ends with its group")
            << QByteArray("{\\uc9\\f2\\u25991?}x") << QStringList{zero, song};
        QTest::newRow("skipped destinations")
            << QByteArray("{\\*\\unknown\\f1 x}{\\info{\\title\\f1 x}}{\\pict\\f1 00}")
            << QStringList{};
        QTest::newRow("headers and notes")
            << QByteArray("{\\header\\f1 x}{\\footnote\\f2 x}") << QStringList{one, song};
        QTest::newRow("comments") << QByteArray("{\\*\\annotation\\f1 x}") << QStringList{one};
        QTest::newRow("text boxes")
            << QByteArray("{\\shp{\\*\\shpinst{\\sp{\\sn a}{\\sv b}}{\\shptxt\\f1 x}}}")
            << QStringList{one};
        QTest::newRow("Unicode version of a text")
            << QByteArray("{\\upr{\\f1 x}{\\*\\ud{\\f2 x}}}") << QStringList{song};
        QTest::newRow("binary data") << QByteArray("{\\pict\\bin4 }}}}\\f1 x}") << QStringList{};
        QTest::newRow("binary data in the text")
            << QByteArray("\\bin3 }{x\\f1 y") << QStringList{one};
        QTest::newRow("special characters") << QByteArray("\\f1\\emdash") << QStringList{one};
        QTest::newRow("escaped braces") << QByteArray("\\f1\\{") << QStringList{one};
        QTest::newRow("carried by the document") << QByteArray("\\f3 x") << QStringList{};
        QTest::newRow("a font that the table lacks") << QByteArray("\\f9 x") << QStringList{};
    }

    void documentsAreReadAsTheyAreWritten()
    {
        QFETCH(QByteArray, body);
        QTEST(familiesOf("{\\rtf1\\deff0" + fontTable + "{\\colortbl;}" + body + "}"), "families");
    }

    void namesComeInTheEncodingOfTheirFont()
    {
        QCOMPARE(familiesOf("{\\rtf1\\deff0{\\fonttbl{\\f0\\fcharset128 \\'82\\'6c\\'82\\'72"
                            " \\'96\\'be\\'92\\'a9;}}x}"),
                 QStringList{QStringLiteral("ＭＳ 明朝")});
        QCOMPARE(familiesOf("{\\rtf1\\deff0{\\fonttbl{\\f0\\uc1\\u24494?\\u36719?X;}}x}"),
                 QStringList{QStringLiteral("微软X")});
    }

    void theTableMayDoWithoutGroups()
    {
        QCOMPARE(familiesOf("{\\rtf1\\deff1{\\fonttbl\\f0\\fswiss Zero;\\f1\\froman One;}x}"),
                 QStringList{QStringLiteral("One")});
    }

    void withoutADefaultTheFirstFontHolds()
    {
        QCOMPARE(familiesOf("{\\rtf1{\\fonttbl{\\f0 Zero;}}x}"),
                 QStringList{QStringLiteral("Zero")});
    }

    void alternativeNamesAreKept()
    {
        const QString path = write("{\\rtf1\\deff0{\\fonttbl{\\f0 Zero{\\*\\falt Other};}}x}");
        const std::vector<programs::UsedFamily> families = programs::documentFonts(path);
        QCOMPARE(families.size(), std::size_t(1));
        QCOMPARE(families.front().alternative, QStringLiteral("Other"));
        // A second entry of the family has none, which takes nothing away.
        write("{\\rtf1\\deff0{\\fonttbl{\\f0 Zero{\\*\\falt Other};}{\\f1 Zero;}}x}");
        QCOMPARE(programs::documentFonts(path).front().alternative, QStringLiteral("Other"));
    }

    void variantsForACharacterSetAreTheFontItself_data()
    {
        QTest::addColumn<QByteArray>("entry");
        QTest::addColumn<QString>("family");
        const QString one = QStringLiteral("One");
        QTest::newRow("Eastern European") << QByteArray("\\fcharset238 One CE") << one;
        QTest::newRow("Cyrillic") << QByteArray("\\fcharset204 One CYR") << one;
        QTest::newRow("Hebrew") << QByteArray("\\fcharset177 One (Hebrew)") << one;
        QTest::newRow("Latin of an East Asian font")
            << QByteArray("\\fcharset0 One Western") << one;
        QTest::newRow("another character set")
            << QByteArray("\\fcharset0 One CE") << QStringLiteral("One CE");
        QTest::newRow("nothing else") << QByteArray("\\fcharset238 CE") << QStringLiteral("CE");
    }

    void variantsForACharacterSetAreTheFontItself()
    {
        QFETCH(QByteArray, entry);
        QFETCH(QString, family);
        QCOMPARE(familiesOf("{\\rtf1\\deff0{\\fonttbl{\\f0" + entry + ";}}x}"),
                 QStringList{family});
    }

    void malformedDocumentsAreRefused_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::newRow("truncated") << QByteArray("{\\rtf1{\\fonttbl{\\f0 Zero;}}text");
        QTest::newRow("truncated in a word") << QByteArray("{\\rtf1\\fo");
        QTest::newRow("only the beginning") << QByteArray("{\\rtf");
        QTest::newRow("deep nesting") << "{\\rtf1" + QByteArray(1000000, '{');
        QByteArray fonts = "{\\rtf1{\\fonttbl";
        for (int n = 0; n < 30000; ++n)
            fonts += "{\\f" + QByteArray::number(n) + " Name;}";
        QTest::newRow("endless table of fonts") << fonts + "}x}";
        QTest::newRow("endless name")
            << "{\\rtf1{\\fonttbl{\\f0 " + QByteArray(5000000, 'x') + ";}}x}";
    }

    void malformedDocumentsAreRefused()
    {
        QFETCH(QByteArray, document);
        const QStringList families = familiesOf(document);
        QCOMPARE(families.size(), 1);
        QVERIFY2(families.first().startsWith(QLatin1String("error: ")),
                 qPrintable(families.first()));
    }

private:
    const QByteArray fontTable =
        "{\\fonttbl{\\f0\\fswiss\\fcharset0{\\*\\panose 020b0604020202020204}Zero;}{\\f1 One;}"
        "{\\f2\\fnil\\fcharset134 \\'cb\\'ce\\'cc\\'e5;}"
        "{\\f3{\\*\\fontemb\\ftruetype 00}Carried;}}";

    QString write(const QByteArray &content)
    {
        const QString path = m_directory.filePath(QStringLiteral("document.vyr"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }

    QStringList familiesOf(const QByteArray &content)
    {
        return testsupport::documentFamilies(write(content));
    }

    QTemporaryDir m_directory;
};

HEADLESS_TEST_MAIN(RtfFontsTest)
#include "tst_rtffonts.moc"
