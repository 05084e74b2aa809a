#include "texts/texts.h"

#include <QDirIterator>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include "tests/support/shell/headlesstest.h"

/// What users read, in Chinese.
class TextsTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { texts::useLanguage({}); }

    void everyTextOfARoomHasItsChinese_data()
    {
        QTest::addColumn<QString>("room");
        for (const char *room :
             {"doctor", "helio/ctl/doctor", "helio/ctl/why", "helio/ctl/fleet", "helio/ctl/suite",
              "helio/suite", "fleet", "helio/shell", "helio/webengine", "suites/addons",
              "programs/checktool", "programs/component", "programs/eptools", "programs/quickstart",
              "programs/replace", "programs/screencap", "programs/screengrab"})
            QTest::newRow(room) << QString::fromLatin1(room);
    }

    void everyTextOfARoomHasItsChinese()
    {
        QFETCH(QString, room);
        const QJsonObject table = chinese();
        const QSet<QString> said = textsOfSources(room);
        QVERIFY(!said.isEmpty());
        for (const QString &text : said)
            QVERIFY2(!table.value(text).toString().isEmpty(), qPrintable(text));
    }

    void theTableHasNoTextThatNobodySays()
    {
        QSet<QString> said;
        for (const char *folder : {"doctor", "fleet", "helio", "programs", "suites"})
            said += textsOfSources(QString::fromLatin1(folder));
        QStringList sorted(said.begin(), said.end());
        sorted.sort();
        QStringList translated = chinese().keys();
        translated.sort();
        QCOMPARE(translated, sorted);
    }

    void translationsHaveThePlacesOfTheirTexts()
    {
        const QJsonObject table = chinese();
        for (auto text = table.begin(); text != table.end(); ++text)
            QCOMPARE(placesOf(text.value().toString()), placesOf(text.key()));
    }

    void theLanguageMayNameItsCountry_data()
    {
        QTest::addColumn<QString>("language");
        for (const char *language : {"zh", "zh_CN", "zh-CN", "zh_HK", "zh-Hans-CN"})
            QTest::newRow(language) << QString::fromLatin1(language);
    }

    void theLanguageMayNameItsCountry()
    {
        QFETCH(QString, language);
        QCOMPARE(texts::useLanguage(language), QStringLiteral("zh"));
        QCOMPARE(texts::tr("Reload"), QStringLiteral("重新加载"));
        QCOMPARE(texts::tr("in no table"), QStringLiteral("in no table"));
    }

    void aLanguageWithoutTableLeavesTheTextsEnglish_data()
    {
        QTest::addColumn<QString>("language");
        for (const char *language : {"", "C", "en_GB", "fr", "xx"})
            QTest::newRow(language) << QString::fromLatin1(language);
    }

    void aLanguageWithoutTableLeavesTheTextsEnglish()
    {
        QFETCH(QString, language);
        texts::useLanguage(QStringLiteral("zh"));
        QCOMPARE(texts::useLanguage(language), QStringLiteral("en"));
        QCOMPARE(texts::tr("Reload"), QStringLiteral("Reload"));
    }

private:
    static QString sourcePath(const QString &name)
    {
        return QStringLiteral(TEST_DATA_DIR "/../") + name;
    }

    static QJsonObject chinese()
    {
        const QByteArray table = testsupport::readFile(sourcePath(QStringLiteral("texts/zh.json")));
        return QJsonDocument::fromJson(table).object();
    }

    /// The arguments of texts::tr() in the sources of @p folder.
    static QSet<QString> textsOfSources(const QString &folder)
    {
        // A literal, with what is escaped in it; several in a row are one text.
        const QString literalPattern = QStringLiteral("\"((?:[^\"\\\\]|\\\\.)*)\"");
        const QRegularExpression literal(literalPattern);
        const QRegularExpression call(
            QStringLiteral("texts::tr\\(\\s*((?:%1\\s*)+)\\)").arg(literalPattern));
        QSet<QString> texts;
        QDirIterator files(sourcePath(folder), {QStringLiteral("*.cpp"), QStringLiteral("*.h")},
                           QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString source = QString::fromUtf8(testsupport::readFile(files.next()));
            auto calls = call.globalMatch(source);
            int count = 0;
            for (; calls.hasNext(); ++count) {
                QString text;
                auto literals = literal.globalMatch(calls.next().captured(1));
                while (literals.hasNext())
                    text += literals.next().captured(1);
                text.replace(QLatin1String("\\n"), QLatin1String("\n"));
                texts.insert(text.replace(QLatin1String("\\\""), QLatin1String("\"")));
            }
            if (count != source.count(QLatin1String("texts::tr(")))
                qFatal("%s says something that is not a literal", qPrintable(files.filePath()));
        }
        return texts;
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

HEADLESS_TEST_MAIN(TextsTest)
#include "tst_texts.moc"
