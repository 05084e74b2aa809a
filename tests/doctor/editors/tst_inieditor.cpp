#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include "qtversion/qtversion.h"
#include "tests/doctor/editors/editing.h"
#include "tests/doctor/editors/inifile.h"

using generated::Chooser;
using File = generated::SectionFile;

class TestIniEditor : public QObject
{
    Q_OBJECT

private slots:
    void findsValuesAsQSettingsDoes();
    void setsOneKeyOnly();
    void removesOneKeyOnly();
    void changesNothingButTheKey_data();
    void changesNothingButTheKey();
    void tellsTheLine();
    void refusesWhatItCannotRead_data();
    void refusesWhatItCannotRead();
    void refusesWhatItCannotWrite();
    void hugeContentsEnd();

private:
    QVariantMap readByQSettings(const QByteArray &content);
    QVariantMap readByQSettings(const QByteArray &content, const QString &section,
                                const QString &key);

    const Editing m_editor{doctor::Format::Ini};
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
    qtversion::useUtf8(settings);
    QVariantMap values;
    const QStringList keys = settings.allKeys();
    for (const QString &key : keys)
        values.insert(key, settings.value(key));
    QFile::remove(path);
    return values;
}

void TestIniEditor::findsValuesAsQSettingsDoes()
{
    Chooser choose(1);
    int seen = 0;
    for (int i = 0; i < 3000; ++i) {
        const File file = generated::randomIni(choose);
        const QVariantMap values = readByQSettings(file.all());
        for (const File::Entry &entry : file.entries) {
            const QVariant value = values.value(generated::wholeName(entry.section, entry.key));
            if (!value.isValid())
                continue;
            const int last = file.lastOf(entry.section, entry.key);
            const QString expected = value.type() == QVariant::StringList
                                         ? QString::fromUtf8(file.entries.at(last).value.trimmed())
                                         : value.toString();
            const QString actual = m_editor.find(file.all(), {entry.section, entry.key});
            QCOMPARE(actual, expected);
            ++seen;
        }
    }
    QVERIFY2(seen > 9000, qPrintable(QString::number(seen)));
}

void TestIniEditor::setsOneKeyOnly()
{
    Chooser choose(2);
    for (int i = 0; i < 4000; ++i) {
        const File file = generated::randomIni(choose);
        const QStringList key = generated::randomKey(choose, file);
        const QString value = choose.text();
        const QByteArray before = file.all();
        const QByteArray after = m_editor.set(before, key, value);
        QCOMPARE(m_editor.find(after, key), value);
        const int entry = file.lastOf(key.first(), key.last());
        if (entry < 0)
            QVERIFY2(generated::isInsertion(before, after), after.constData());
        else
            QVERIFY2(file.keepsAllBut(entry, after), after.constData());

        const QString name = generated::wholeName(key.first(), key.last());
        QVariantMap expected = readByQSettings(before);
        QVariantMap values = readByQSettings(after);
        const QVariant written = values.take(name);
        QCOMPARE(written.toStringList().join(QLatin1Char(',')).remove(QLatin1Char(' ')),
                 QString(value).remove(QLatin1Char(' ')));
        if (written.type() != QVariant::StringList)
            QCOMPARE(written.toString(), value);
        expected.remove(name);
        QCOMPARE(values, expected);
    }
}

void TestIniEditor::removesOneKeyOnly()
{
    Chooser choose(3);
    for (int i = 0; i < 3000; ++i) {
        const File file = generated::randomIni(choose);
        const QStringList key = generated::randomKey(choose, file);
        const QByteArray after = m_editor.remove(file.all(), key);
        QCOMPARE(after, file.without(key.first(), key.last()));
        QCOMPARE(m_editor.find(after, key), QStringLiteral("(none)"));
        QVariantMap values = readByQSettings(file.all());
        values.remove(generated::wholeName(key.first(), key.last()));
        QCOMPARE(readByQSettings(after), values);
    }
}

void TestIniEditor::changesNothingButTheKey_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("expected");

    const auto row = [](const char *name, const QByteArray &content, const QString &section,
                        const QString &value, const QByteArray &expected) {
        QTest::newRow(name) << content << section << value << expected;
    };
    const QString s = QStringLiteral("s");
    const QString plain = QStringLiteral("new");
    row("spaces and a comment behind stay", "[s]\n  k =  old   ; why\nz=1\n", s, plain,
        "[s]\n  k =  new   ; why\nz=1\n");
    row("line ends of DOS stay", "[s]\r\nk=old\r\n", s, plain, "[s]\r\nk=new\r\n");
    row("a missing last line end stays missing", "[s]\nk=old", s, plain, "[s]\nk=new");
    row("a byte order mark stays", "\xef\xbb\xbf[s]\nk=old\n", s, plain,
        "\xef\xbb\xbf[s]\nk=new\n");
    row("the last of two entries changes", "[s]\nk=1\nk=2\n", s, plain, "[s]\nk=1\nk=new\n");
    row("the last of two sections changes", "[s]\nk=1\n[t]\nk=2\n[s]\nk=3\n[t]\n", s, plain,
        "[s]\nk=1\n[t]\nk=2\n[s]\nk=new\n[t]\n");
    row("sections differ in case", "[S]\nk=1\n", s, plain, "[S]\nk=1\n\n[s]\nk=new\n");
    row("a key goes behind the last of its section", "[s]\na=1\n\n; about t\n[t]\n", s, plain,
        "[s]\na=1\nk=new\n\n; about t\n[t]\n");
    row("a key goes behind an empty section's header", "[s]\n[t]", s, plain, "[s]\nk=new\n[t]");
    row("a key goes behind a last line without an end", "[s]\r\na=1", s, plain,
        "[s]\r\na=1\r\nk=new");
    row("a key goes behind a comment of the line before", "[s]\na=1 ; x\nb=2;y", s, plain,
        "[s]\na=1 ; x\nb=2;y\nk=new");
    row("a section is added behind a gap", "[t]\na=1\n", s, plain, "[t]\na=1\n\n[s]\nk=new\n");
    row("a section needs no second gap", "[t]\na=1\n\n", s, plain, "[t]\na=1\n\n[s]\nk=new\n");
    row("a section is added without a last line end", "[t]\r\na=1", s, plain,
        "[t]\r\na=1\r\n\r\n[s]\r\nk=new");
    row("an empty file gets its first section", "", s, plain, "[s]\nk=new\n");
    row("a mark alone stays", "\xef\xbb\xbf", s, plain, "\xef\xbb\xbf[s]\nk=new\n");
    row("a mark garbles a first name", "\xef\xbb\xbfk=1\nz=1", QString(), plain,
        "\xef\xbb\xbfk=1\nz=1\nk=new");
    row("a mark keeps the first line", "\xef\xbb\xbf[s]\n", QString(), plain,
        "\xef\xbb\xbf[s]\n\n[General]\nk=new\n");
    row("a key without section comes first", "; about\n[s]\n", QString(), plain,
        "k=new\n; about\n[s]\n");
    row("General is the section of keys without one", "a=1\n[general]\nb=2\n", QString(), plain,
        "a=1\n[general]\nb=2\nk=new\n");
    row("a name in UTF-8 is found", "[\xe4\xb8\xad]\nk=1\n", QStringLiteral("中"), plain,
        "[\xe4\xb8\xad]\nk=new\n");
    row("General is read in any case", "[GENERAL]\n", QStringLiteral("general"), plain,
        "[GENERAL]\nk=new\n");
    row("a slash at a name's end is escaped", "", QStringLiteral("a/b/"), plain,
        "[a\\b%2F]\nk=new\n");
    row("a new name is escaped", "", QStringLiteral("中/a b"), plain, "[%U4E2D\\a b]\nk=new\n");
    row("special characters are quoted", "[s]\nk=old\n", s, QStringLiteral("a;b=\"c\", "),
        "[s]\nk=\"a;b=\\\"c\\\", \"\n");
    row("other letters are escaped", "[s]\nk=old\n", s, QStringLiteral("中1x"),
        "[s]\nk=\\x4e2d\\x31x\n");
    row("other letters stay UTF-8 where they were", "[s]\nk=\xe6\x96\x87\n", s,
        QStringLiteral("中1"),
        "[s]\nk=\xe4\xb8\xad"
        "1\n");
    row("a list stays a list", "[s]\nk=a, b\n", s, QStringLiteral("a, b, c"), "[s]\nk=a, b, c\n");
    row("text with commas stays text", "[s]\nk=\"a, b\"\n", s, QStringLiteral("a, b, c"),
        "[s]\nk=\"a, b, c\"\n");
    row("an at sign is doubled", "[s]\nk=1\n", s, QStringLiteral("@x"), "[s]\nk=@@x\n");
    row("a value over two lines goes whole", "[s]\nk=a\\\nb\nz=\"1\n2\"\n", s, plain,
        "[s]\nk=new\nz=\"1\n2\"\n");
    row("what is there already stays as written", "[s]\nk=\"\\x61\"\n", s, QStringLiteral("a"),
        "[s]\nk=\"\\x61\"\n");
    row("an empty value is filled", "[s]\nk=\n", s, plain, "[s]\nk=new\n");
    row("a value is emptied", "[s]\nk= old \n", s, QString(), "[s]\nk=  \n");
    row("a commented key is none", "[s]\n;k=1\n", s, plain, "[s]\nk=new\n;k=1\n");
}

void TestIniEditor::changesNothingButTheKey()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, section);
    QFETCH(QString, value);
    QFETCH(QByteArray, expected);
    const QStringList key{section, QStringLiteral("k")};
    QCOMPARE(m_editor.set(content, key, value), expected);
    QCOMPARE(m_editor.find(expected, key), value);
    QString name = section.isEmpty() || section == QLatin1String("general")
                       ? key.last()
                       : key.join(QLatin1Char('/'));
    name.replace(QLatin1String("//"), QLatin1String("/"));
    // Qt 5 takes the bytes of a name for Latin-1.
    const bool isRaw = (QT_VERSION_MAJOR == 5 && content.startsWith("[\xe4")) ||
                       section.endsWith(QLatin1Char('/'));
    QCOMPARE(readByQSettings(expected).contains(name), !isRaw);
}

void TestIniEditor::tellsTheLine()
{
    const QByteArray content("; x\r\n[s]\r\na=\"1\r\n2\"\r\nk=3\r\n");
    QCOMPARE(m_editor.line(content, {QStringLiteral("s"), QStringLiteral("k")}), 5);
}

void TestIniEditor::refusesWhatItCannotRead_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("an open quote at the end") << QByteArray("[s]\nk=\"a\nb=1\n");
    QTest::newRow("a backslash at the end") << QByteArray("[s]\nk=a\\");
    QTest::newRow("a last line that goes on") << QByteArray("[s]\nk=a\\\r\n");
    QTest::newRow("a header without its end") << QByteArray("[s\nk=1\n");
    QTest::newRow("a zero") << QByteArray("[s]\nk=1\n\0", 9);
    QTest::newRow("UTF-16") << QByteArray("\xff\xfe[\0s\0]\0", 8);
    QTest::newRow("more than 64 MiB") << QByteArray(64 * 1024 * 1024 + 1, '\n');
}

void TestIniEditor::refusesWhatItCannotRead()
{
    QFETCH(QByteArray, content);
    const QStringList key{QStringLiteral("s"), QStringLiteral("k")};
    QVERIFY(m_editor.refuses(content, key));
}

void TestIniEditor::refusesWhatItCannotWrite()
{
    const QString section = QStringLiteral("s");
    const QString text = QStringLiteral("x");
    const QStringList key{section, QStringLiteral("k")};
    const QByteArray content("[s]\nk=1\n");
    QVERIFY(m_editor.refusesToSet(content, key, QString(1, QChar::Null)));
    QVERIFY(m_editor.refusesToSet(content, key, QString(QChar(0xd800))));
    QVERIFY(m_editor.refusesToSet(content, key, text + QChar(0xdc00)));
    QVERIFY(m_editor.refusesToSet(content, {section, QString()}, text));
    QVERIFY(m_editor.refusesToSet(content, {section}, text));
    QVERIFY(m_editor.refusesToSet(content, {}, text));
    QVERIFY(m_editor.refusesToSet(QByteArray(64 * 1024 * 1024 - 2, '\n'), key, text));
}

void TestIniEditor::hugeContentsEnd()
{
    // What took the square of its time would not end before the test is ended.
    constexpr int size = 1024 * 1024;
    for (const QByteArray &part :
         QByteArrayList{"k=1\n", "[s]\n", "\"", "\\", "[", "k=\\x1", "k=a,\n", ";\r", "%"}) {
        const QByteArray content = "[s]\n" + part.repeated(size / part.size()) + "\n";
        const QStringList key{QStringLiteral("s"), QStringLiteral("k")};
        m_editor.find(content, key);
        m_editor.remove(m_editor.set(content, key, QStringLiteral("x")), key);
    }
}

QTEST_GUILESS_MAIN(TestIniEditor)

#include "tst_inieditor.moc"
