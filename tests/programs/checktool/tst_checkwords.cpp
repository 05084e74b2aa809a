#include <QDir>
#include <QRegularExpression>

#include "programs/checktool/catalogue.h"
#include "programs/checktool/checks/findings.h"
#include "programs/checktool/machine/shellword.h"
#include "tests/support/shell/headlesstest.h"

using standin::Catalogue;

/// What the check tool says, in Chinese.
class CheckWordsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyTextOfTheToolIsTranslated()
    {
        QStringList translated = Catalogue(QStringLiteral("zh")).sourceTexts();
        QStringList said = textsOfSources();
        translated.sort();
        said.sort();
        QVERIFY(said.size() > 200);
        QCOMPARE(translated, said);
    }

    void translationsHaveThePlacesOfTheirTexts()
    {
        const Catalogue catalogue(QStringLiteral("zh"));
        const QStringList texts = catalogue.sourceTexts();
        for (const QString &text : texts) {
            const QString translated =
                catalogue.translate("", text.toUtf8().constData(), nullptr, -1);
            QVERIFY(!translated.isEmpty());
            QCOMPARE(placesOf(translated), placesOf(text));
        }
    }

    void aLanguageWithoutTableLeavesTheTextsAsTheyAre()
    {
        const Catalogue catalogue(QStringLiteral("xx"));
        QVERIFY(catalogue.isEmpty());
        QCOMPARE(catalogue.translate("", "No problem was found.", nullptr, -1), QString());
    }

    void findingsAreSaidInChinese()
    {
        Catalogue catalogue(QStringLiteral("zh"));
        QCoreApplication::installTranslator(&catalogue);
        const QString text = standin::Findings().text();
        QCoreApplication::removeTranslator(&catalogue);
        QCOMPARE(text, QStringLiteral("✔ 未发现问题。"));
    }

    void commandsToPasteKeepAPathInOneWord()
    {
        QCOMPARE(standin::shellWord(QStringLiteral("/a b/$(c)")), QStringLiteral("'/a b/$(c)'"));
        QCOMPARE(standin::shellWord(QStringLiteral("it's")), QStringLiteral("'it'\\''s'"));
    }

private:
    /// As they stand in the sources.
    static QStringList textsOfSources()
    {
        // A literal, with what is escaped in it; several in a row are one text.
        const QString literalPattern = QStringLiteral("\"((?:[^\"\\\\]|\\\\.)*)\"");
        const QRegularExpression literal(literalPattern);
        const QRegularExpression call(
            QStringLiteral("Words::tr\\(\\s*((?:%1\\s*)+)\\)").arg(literalPattern));
        QSet<QString> texts;
        const QDir sources(QStringLiteral(TEST_DATA_DIR "/../programs/checktool"));
        const QFileInfoList files = sources.entryInfoList({QStringLiteral("*.cpp")});
        for (const QFileInfo &file : files) {
            const QString source = QString::fromUtf8(testsupport::readFile(file.filePath()));
            auto calls = call.globalMatch(source);
            int count = 0;
            for (; calls.hasNext(); ++count) {
                QString text;
                auto literals = literal.globalMatch(calls.next().captured(1));
                while (literals.hasNext())
                    text += literals.next().captured(1);
                texts.insert(text.replace(QLatin1String("\\n"), QLatin1String("\n")));
            }
            if (count != source.count(QLatin1String("Words::tr(")))
                qFatal("%s says something that is no literal", qPrintable(file.fileName()));
        }
        return QStringList(texts.begin(), texts.end());
    }

    static QStringList placesOf(const QString &text)
    {
        static const QRegularExpression place(QStringLiteral("%\\d"));
        QStringList places;
        auto found = place.globalMatch(text);
        while (found.hasNext())
            places.append(found.next().captured());
        places.sort();
        return places;
    }
};

HEADLESS_TEST_MAIN(CheckWordsTest)
#include "tst_checkwords.moc"
