#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include "doctor/editors/keyeditor.h"
#include "tests/doctor/editors/generated.h"

using doctor::keyEditor;
using generated::Chooser;

namespace {

const doctor::KeyEditor &editor()
{
    return keyEditor(doctor::Format::Ini);
}

QString found(const QByteArray &content, const QStringList &key)
{
    const auto value = editor().find(content, key);
    return value ? value->value : QStringLiteral("(none)");
}

QByteArray changed(const doctor::EditedContent &edited)
{
    return edited.content.value_or("refused: " + edited.problem.toUtf8());
}

QByteArray afterSet(const QByteArray &content, const QStringList &key, const QString &value)
{
    return changed(editor().set(content, key, value));
}

QByteArray afterRemove(const QByteArray &content, const QStringList &key)
{
    return changed(editor().remove(content, key));
}

/// A file of sections as pieces, so that what must not change is known.
struct File
{
    struct Entry
    {
        QString section;
        QString key;
        QByteArray before;
        QByteArray value;
        QByteArray after;
        bool isList = false;
        /// A comment behind the value.
        bool hasComment = false;
    };

    QByteArray start;
    QVector<Entry> entries;

    /// The pieces from one entry up to another.
    QByteArray bytes(int from, int to) const
    {
        QByteArray result;
        for (int i = from; i < to; ++i)
            result += entries.at(i).before + entries.at(i).value + entries.at(i).after;
        return result;
    }
    QByteArray all() const { return start + bytes(0, entries.size()); }
    int lastOf(const QString &section, const QString &key) const
    {
        for (int i = entries.size() - 1; i >= 0; --i) {
            if (entries.at(i).section == section && entries.at(i).key == key)
                return i;
        }
        return -1;
    }
};

const QByteArrayList sectionNames{"General", "general", "s", "two words", "a%2Bb", "\xe4\xb8\xad"};
const QByteArrayList keyNames{"k",           "K",     "other",  "two words",
                              "two%20words", "x%2By", "%U4e2d", "#k"};

QString decodedName(const QByteArray &name)
{
    if (name == "a%2Bb")
        return QStringLiteral("a+b");
    if (name == "x%2By")
        return QStringLiteral("x+y");
    if (name == "%U4e2d")
        return QStringLiteral("中");
    return QString::fromUtf8(name).replace(QLatin1String("%20"), QLatin1String(" "));
}

QString sectionNamed(const QByteArray &name)
{
    return name.toLower() == "general" ? QString() : decodedName(name);
}

QByteArray randomValue(Chooser &choose)
{
    const QByteArrayList values{"",
                                "plain",
                                "two words",
                                "1, 2,3",
                                "\"a;b\"",
                                "\"a, b\", c",
                                "C:\\\\dir",
                                "\\x4e2d1",
                                "\\x41\"b\"",
                                "\"open\\\"\"",
                                "a\\\n  b",
                                "\\101\\0078",
                                "\"a\nb\"",
                                "@@at",
                                "\\ta\\n",
                                "\\q\\'\\?",
                                "\"  kept  \"",
                                "a\" b \"c",
                                "\xe4\xb8\xad",
                                "-1.5",
                                "a=b",
                                "\\x20",
                                "x\\  ",
                                "\"\""};
    return choose.of(values);
}

File randomFile(Chooser &choose)
{
    File file;
    const QByteArray lineEnd = choose.of({"\n", "\r\n", "\n", "\r"});
    if (choose.percent(10))
        file.start = "\xef\xbb\xbf";
    QString section;
    for (int lines = choose.below(15); lines > 0; --lines) {
        File::Entry entry;
        if (choose.percent(20))
            entry.before = choose.of({"; a \"comment\" = 1", "", "  ", "\t; x", "junk"}) + lineEnd;
        if (choose.percent(25)) {
            const QByteArray name = choose.of(sectionNames);
            section = sectionNamed(name);
            entry.before +=
                choose.of({"[", " [ "}) + name + choose.of({"]", " ]", "] ; c"}) + lineEnd;
        }
        const QByteArray name = choose.of(keyNames);
        entry.section = section;
        entry.key = decodedName(name);
        entry.before += choose.of({"", "  "}) + name + choose.of({"=", " = ", "= "});
        entry.value = randomValue(choose);
        entry.isList = entry.value.contains(", ");
        entry.hasComment = choose.percent(15);
        entry.after = (entry.hasComment ? " ; \"note" : choose.of({"", "", " "})) + lineEnd;
        file.entries.append(entry);
    }
    if (!file.entries.isEmpty() && choose.percent(30))
        file.entries.last().after.chop(lineEnd.size());
    return file;
}

} // namespace

class TestIniEditor : public QObject
{
    Q_OBJECT

private slots:
    void findsValuesAsQSettingsDoes();
    void setsOneKeyOnly();
    void removesOneKeyOnly();
    void changesNothingButTheKey_data();
    void changesNothingButTheKey();
    void readsOddities_data();
    void readsOddities();
    void tellsTheLine();
    void refusesWhatItCannotRead_data();
    void refusesWhatItCannotRead();
    void refusesWhatItCannotWrite();
    void takesLinearTime();

private:
    QVariantMap readByQSettings(const QByteArray &content);
    QVariantMap readByQSettings(const QByteArray &content, const QString &section,
                                const QString &key);

    QTemporaryDir m_directory;
    int m_files = 0;
};

/// What QSettings reads: whole names and values, an unreadable file as nothing.
QVariantMap TestIniEditor::readByQSettings(const QByteArray &content)
{
    const QString path = m_directory.filePath(QString::number(++m_files));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        return {};
    file.close();
    QSettings settings(path, QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    QVariantMap values;
    const QStringList keys = settings.allKeys();
    for (const QString &key : keys)
        values.insert(key, settings.value(key));
    QFile::remove(path);
    return values;
}

namespace {

QString wholeName(const QString &section, const QString &key)
{
    return section.isEmpty() ? key : section + QLatin1Char('/') + key;
}

QString asSeenByQSettings(const QString &name)
{
    // It takes the bytes of a name for Latin-1.
    return name.contains(QStringLiteral("中/")) ? QString::fromLatin1(name.toUtf8()) : name;
}

} // namespace

void TestIniEditor::findsValuesAsQSettingsDoes()
{
    Chooser choose(1);
    int seen = 0;
    for (int i = 0; i < 3000; ++i) {
        const File file = randomFile(choose);
        const QVariantMap values = readByQSettings(file.all());
        for (const File::Entry &entry : file.entries) {
            const QVariant value = values.value(wholeName(entry.section, entry.key));
            if (!value.isValid())
                continue;
            const int last = file.lastOf(entry.section, entry.key);
            const QString expected = value.type() == QVariant::StringList
                                         ? QString::fromUtf8(file.entries.at(last).value.trimmed())
                                         : value.toString();
            const QString actual = found(file.all(), {entry.section, entry.key});
            if (actual != expected)
                qDebug() << file.all() << entry.section << entry.key;
            QCOMPARE(actual, expected);
            ++seen;
        }
    }
    QVERIFY2(seen > 9000, qPrintable(QString::number(seen)));
}
void TestIniEditor::setsOneKeyOnly() {}
void TestIniEditor::removesOneKeyOnly() {}
void TestIniEditor::changesNothingButTheKey_data() {}
void TestIniEditor::changesNothingButTheKey() {}
void TestIniEditor::readsOddities_data() {}
void TestIniEditor::readsOddities() {}
void TestIniEditor::tellsTheLine() {}
void TestIniEditor::refusesWhatItCannotRead_data() {}
void TestIniEditor::refusesWhatItCannotRead() {}
void TestIniEditor::refusesWhatItCannotWrite() {}
void TestIniEditor::takesLinearTime() {}

QTEST_GUILESS_MAIN(TestIniEditor)

#include "tst_inieditor.moc"
