#include <QTemporaryDir>

#include "tests/programs/missingfonts/documentfamilies.h"
#include "tests/programs/missingfonts/packagebuilder.h"
#include "tests/support/shell/headlesstest.h"

/// The fonts of presentations that are packages.
class SlideFontsTest : public QObject
{
    Q_OBJECT

private slots:
    void aRunsOwnFontsComeFirst()
    {
        QCOMPARE(familiesOf(
                     shape({}, "<a:latin typeface=\"Own\"/><a:ea typeface=\"OwnAsian\"/>", "a文")),
                 (QStringList{QStringLiteral("Own"), QStringLiteral("OwnAsian")}));
    }

    void shapesWithoutAFontTakeTheThemesBody()
    {
        QCOMPARE(familiesOf(shape({}, {}, "a")), QStringList{QStringLiteral("Body")});
    }

    void titlesTakeTheMastersTitleStyle()
    {
        QCOMPARE(familiesOf(shape("<p:ph type=\"ctrTitle\"/>", {}, "a")),
                 QStringList{QStringLiteral("Heading")});
    }

    void placeholdersInheritFromTheirLayout()
    {
        QCOMPARE(familiesOf(shape("<p:ph idx=\"3\"/>", {}, "a")),
                 (QStringList{QStringLiteral("Bullets"), QStringLiteral("OfLayout")}));
    }

    void paragraphsTakeTheFontOfTheirLevel()
    {
        const QByteArray shapeOfLevelTwo =
            "<p:sp><p:txBody><a:lstStyle><a:lvl2pPr><a:defRPr><a:latin typeface=\"Second\"/>"
            "</a:defRPr></a:lvl2pPr></a:lstStyle><a:p><a:pPr lvl=\"1\"/><a:r><a:t>x</a:t></a:r>"
            "</a:p></p:txBody></p:sp>";
        QCOMPARE(familiesOf(shapeOfLevelTwo), QStringList{QStringLiteral("Second")});
    }

    void theParagraphOfAFieldStaysInItsLevel()
    {
        QCOMPARE(familiesOf("<p:sp><p:txBody><a:lstStyle><a:lvl2pPr><a:defRPr><a:latin"
                            " typeface=\"Second\"/></a:defRPr></a:lvl2pPr></a:lstStyle><a:p><a:pPr"
                            " lvl=\"1\"/><a:fld><a:rPr/><a:pPr/><a:t>1</a:t></a:fld></a:p>"
                            "</p:txBody></p:sp>"),
                 QStringList{QStringLiteral("Second")});
    }

    void bulletsCountWhereTheyAreShown()
    {
        const auto bulleted = [](const QByteArray &bullet) {
            return "<p:sp><p:txBody><a:p><a:pPr><a:buFont typeface=\"Dots\"/>" + bullet +
                   "</a:pPr><a:r><a:t>x</a:t></a:r></a:p></p:txBody></p:sp>";
        };
        QCOMPARE(familiesOf(bulleted("<a:buChar char=\"n\"/>")),
                 (QStringList{QStringLiteral("Body"), QStringLiteral("Dots")}));
        QCOMPARE(familiesOf(bulleted("<a:buNone/>")), QStringList{QStringLiteral("Body")});
    }

    void bulletsInTheFontOfTheTextHaveNoneOfTheirOwn()
    {
        const auto bulleted = [](const QByteArray &bulletFont) {
            return "<p:sp><p:nvPr><p:ph idx=\"3\"/></p:nvPr><p:txBody><a:p><a:pPr>" + bulletFont +
                   "<a:buChar char=\"-\"/></a:pPr><a:r><a:t>x</a:t></a:r></a:p></p:txBody></p:sp>";
        };
        QCOMPARE(familiesOf(bulleted({})),
                 (QStringList{QStringLiteral("Bullets"), QStringLiteral("OfLayout")}));
        QCOMPARE(familiesOf(bulleted("<a:buFontTx/>")), QStringList{QStringLiteral("OfLayout")});
    }

    void theLanguageChoosesTheThemesEastAsianFont()
    {
        QCOMPARE(familiesOf("<p:sp><p:txBody><a:p><a:r><a:rPr lang=\"zh-CN\"/><a:t>文</a:t></a:r>"
                            "</a:p></p:txBody></p:sp>"),
                 QStringList{QStringLiteral("汉")});
    }

    void symbolCharactersTakeTheSymbolFont()
    {
        QCOMPARE(familiesOf(shape({}, "<a:latin typeface=\"Text\"/><a:sym typeface=\"Signs\"/>",
                                  "\xEF\x83\xA0")),
                 QStringList{QStringLiteral("Signs")});
    }

    void sampleTextOfLayoutsDoesNotCount()
    {
        // The layout's placeholder holds text in its own font; the text beside it is shown.
        QCOMPARE(familiesOf({}), QStringList());
        QCOMPARE(familiesOf({}, shape({}, "<a:latin typeface=\"Shown\"/>", "x")),
                 QStringList{QStringLiteral("Shown")});
    }

    void fontsThatThePresentationCarriesAreLeftOut()
    {
        QCOMPARE(familiesOf(shape({}, "<a:latin typeface=\"Carried\"/>", "x")), QStringList());
    }

private:
    static QByteArray shape(const QByteArray &placeholder, const QByteArray &properties,
                            const QByteArray &text)
    {
        return "<p:sp><p:nvSpPr><p:nvPr>" + placeholder +
               "</p:nvPr></p:nvSpPr><p:txBody><a:lstStyle/><a:p><a:r><a:rPr>" + properties +
               "</a:rPr><a:t>" + text + "</a:t></a:r></a:p></p:txBody></p:sp>";
    }

    QStringList familiesOf(const QByteArray &shapes, const QByteArray &layoutShapes = {})
    {
        testsupport::PackageBuilder package;
        const QString main = QStringLiteral("ppt/presentation.xml");
        const QString slide = QStringLiteral("ppt/slides/slide1.xml");
        const QString layout = QStringLiteral("ppt/slideLayouts/layout1.xml");
        const QString master = QStringLiteral("ppt/slideMasters/master1.xml");
        package.relate({}, QStringLiteral("officeDocument"), QLatin1Char('/') + main);
        package.relate(main, QStringLiteral("slide"), QStringLiteral("slides/slide1.xml"));
        package.relate(slide, QStringLiteral("slideLayout"),
                       QStringLiteral("../slideLayouts/layout1.xml"));
        package.relate(layout, QStringLiteral("slideMaster"),
                       QStringLiteral("../slideMasters/master1.xml"));
        package.relate(master, QStringLiteral("theme"), QStringLiteral("../theme/theme1.xml"));
        package.addXml(main, "<p:presentation><p:embeddedFontLst><p:embeddedFont><p:font"
                             " typeface=\"Carried\"/><p:regular r:id=\"f\"/></p:embeddedFont>"
                             "</p:embeddedFontLst></p:presentation>");
        package.addXml(slide, "<p:sld>" + shapes + "</p:sld>");
        package.addXml(
            layout, "<p:sldLayout><p:sp><p:nvPr><p:ph idx=\"3\"/></p:nvPr><p:txBody><a:lstStyle>"
                    "<a:lvl1pPr><a:defRPr><a:latin typeface=\"OfLayout\"/></a:defRPr></a:lvl1pPr>"
                    "</a:lstStyle><a:p><a:r><a:t>Sample</a:t></a:r></a:p></p:txBody></p:sp>" +
                        layoutShapes + "</p:sldLayout>");
        package.addXml(master,
                       "<p:sldMaster><p:txStyles><p:titleStyle><a:lvl1pPr><a:defRPr><a:latin"
                       " typeface=\"+mj-lt\"/></a:defRPr></a:lvl1pPr></p:titleStyle><p:bodyStyle>"
                       "<a:lvl1pPr><a:buFont typeface=\"Bullets\"/><a:buChar char=\"n\"/><a:defRPr>"
                       "<a:latin typeface=\"+mn-lt\"/></a:defRPr></a:lvl1pPr></p:bodyStyle>"
                       "</p:txStyles></p:sldMaster>");
        package.addXml(QStringLiteral("ppt/theme/theme1.xml"),
                       "<a:theme><a:fontScheme><a:majorFont><a:latin typeface=\"Heading\"/>"
                       "</a:majorFont><a:minorFont><a:latin typeface=\"Body\"/><a:ea"
                       " typeface=\"\"/><a:font script=\"Hans\" typeface=\"汉\"/></a:minorFont>"
                       "</a:fontScheme></a:theme>");
        const QString path = m_directory.filePath(QStringLiteral("show.pptx"));
        package.write(path);
        return testsupport::documentFamilies(path);
    }

    QTemporaryDir m_directory;
};

HEADLESS_TEST_MAIN(SlideFontsTest)
#include "tst_slidefonts.moc"
