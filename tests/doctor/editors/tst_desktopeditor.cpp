#include <QLibrary>
#include <QTest>

#include <cstdlib>

#include "doctor/editors/content/content.h"
#include "tests/doctor/editors/editing.h"
#include "tests/doctor/editors/sectionfile.h"

using generated::Chooser;
using File = generated::SectionFile;

namespace {

/// GLib's reader of key files, taken from the library at run time.
class KeyFile
{
public:
    explicit KeyFile(QLibrary &glib)
        : m_free(function<void (*)(void *)>(glib, "g_key_file_free")),
          m_load(function<int (*)(void *, const char *, std::size_t, int, void *)>(
              glib, "g_key_file_load_from_data")),
          m_string(function<char *(*)(void *, const char *, const char *, void *)>(
              glib, "g_key_file_get_string")),
          m_groups(function<char **(*)(void *, std::size_t *)>(glib, "g_key_file_get_groups")),
          m_keys(function<char **(*)(void *, const char *, std::size_t *, void *)>(
              glib, "g_key_file_get_keys")),
          m_freeAll(function<void (*)(char **)>(glib, "g_strfreev")),
          m_file(function<void *(*)()>(glib, "g_key_file_new")())
    {
    }
    ~KeyFile() { m_free(m_file); }
    Q_DISABLE_COPY_MOVE(KeyFile)

    bool load(const QByteArray &content)
    {
        constexpr int keepAll = 3;
        return m_load(m_file, content.constData(), static_cast<std::size_t>(content.size()),
                      keepAll, nullptr) != 0;
    }

    /// Values by "group/key".
    QMap<QString, QString> values() const
    {
        QMap<QString, QString> result;
        char **groups = m_groups(m_file, nullptr);
        for (char **group = groups; *group != nullptr; ++group) {
            char **keys = m_keys(m_file, *group, nullptr, nullptr);
            for (char **key = keys; *key != nullptr; ++key) {
                char *value = m_string(m_file, *group, *key, nullptr);
                result.insert(QString::fromUtf8(*group) + QLatin1Char('/') +
                                  QString::fromUtf8(*key),
                              doctor::utf8Text(value));
                std::free(value);
            }
            m_freeAll(keys);
        }
        m_freeAll(groups);
        return result;
    }

private:
    template<typename Function>
    static Function function(QLibrary &glib, const char *name)
    {
        return reinterpret_cast<Function>(glib.resolve(name));
    }

    void (*const m_free)(void *);
    int (*const m_load)(void *, const char *, std::size_t, int, void *);
    char *(*const m_string)(void *, const char *, const char *, void *);
    char **(*const m_groups)(void *, std::size_t *);
    char **(*const m_keys)(void *, const char *, std::size_t *, void *);
    void (*const m_freeAll)(char **);
    void *const m_file;
};

const QByteArrayList groupNames{"Desktop Entry", "s", "Added Associations", "\xe4\xb8\xad", " x "};
const QByteArrayList keyNames{"Name",       "Name[de]",         "name",
                              "text/plain", "Name[de_DE@euro]", "X-a b.c",
                              "k\\x",       "\xe4\xb8\xad"};

File randomFile(Chooser &choose)
{
    const QByteArrayList values{
        "",    "plain", "two words ",   "a;b;",  "a\\;b;", "\\sa\\n\\t\\r", "C:\\\\", "a=b",
        "[x]", "#no",   "\xe4\xb8\xad", "\"q\"", "odd\\",  "\\q",           "x # y",  "\\\\s"};
    File file;
    const QByteArray lineEnd = choose.of({"\n", "\r\n", "\n"});
    QString group;
    for (int lines = choose.below(15); lines > 0; --lines) {
        File::Entry entry;
        if (choose.percent(20))
            entry.lead = choose.of({"# a [comment] = 1", "", "  ", "\t# x"}) + lineEnd;
        if (group.isEmpty() || choose.percent(25)) {
            const QByteArray name = choose.of(groupNames);
            group = QString::fromUtf8(name);
            entry.lead += choose.of({"[", " ["}) + name + choose.of({"]", "] "}) + lineEnd;
        }
        const QByteArray name = choose.of(keyNames);
        entry.section = group;
        entry.key = QString::fromUtf8(name);
        entry.before = choose.of({"", "  "}) + name + choose.of({"=", " = ", "= ", "\t=\t"});
        entry.value = choose.of(values);
        entry.after = lineEnd;
        file.entries.append(entry);
    }
    if (!file.entries.isEmpty() && choose.percent(30))
        file.entries.last().after.clear();
    return file;
}

QStringList randomKey(Chooser &choose, const File &file)
{
    if (!file.entries.isEmpty() && choose.percent(60)) {
        const File::Entry &entry = file.entries.at(choose.below(file.entries.size()));
        return {entry.section, entry.key};
    }
    return {QString::fromUtf8(choose.of(groupNames + QByteArrayList{"new"})),
            QString::fromUtf8(choose.of(keyNames + QByteArrayList{"new", "New[zh_CN]"}))};
}

} // namespace

class TestDesktopEditor : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void setsOneKeyOnly();
    void removesOneKeyOnly();
    void readsAndRefusesAsGKeyFileDoes();
    void changesNothingButTheKey_data();
    void changesNothingButTheKey();
    void refusesWhatItCannotWrite();
    void refusesAByteOrderMark();
    void hugeContentsEnd();

private:
    /// What GLib reads; nothing if it cannot.
    std::optional<QMap<QString, QString>> readByGLib(const QByteArray &content)
    {
        KeyFile file(m_glib);
        if (!file.load(content))
            return std::nullopt;
        return file.values();
    }

    const Editing m_editor{doctor::Format::DesktopEntry};
    QLibrary m_glib{QStringLiteral("glib-2.0"), 0};
};

void TestDesktopEditor::initTestCase()
{
    QVERIFY2(m_glib.load(), qPrintable(m_glib.errorString()));
}

void TestDesktopEditor::setsOneKeyOnly()
{
    Chooser choose(1);
    for (int i = 0; i < 4000; ++i) {
        const File file = randomFile(choose);
        const QStringList key = randomKey(choose, file);
        const QString value = choose.text();
        const QByteArray before = file.all();
        const QByteArray after = m_editor.set(before, key, value);
        QCOMPARE(m_editor.find(after, key), value);
        const int entry = file.lastOf(key.first(), key.last());
        if (entry < 0)
            QVERIFY2(generated::isInsertion(before, after), after.constData());
        else
            QVERIFY2(file.keepsAllBut(entry, after), after.constData());

        auto expected = readByGLib(before);
        QVERIFY2(expected, before.constData());
        expected->insert(key.join(QLatin1Char('/')), value);
        QVERIFY2(readByGLib(after) == expected, after.constData());
    }
}

void TestDesktopEditor::removesOneKeyOnly()
{
    Chooser choose(2);
    for (int i = 0; i < 3000; ++i) {
        const File file = randomFile(choose);
        const QStringList key = randomKey(choose, file);
        const QByteArray after = m_editor.remove(file.all(), key);
        QCOMPARE(after, file.without(key.first(), key.last()));
        auto expected = readByGLib(file.all());
        QVERIFY(expected);
        expected->remove(key.join(QLatin1Char('/')));
        QVERIFY2(readByGLib(after) == expected, after.constData());
    }
}

/// Pieces of lines put together at random: most are broken somewhere.
void TestDesktopEditor::readsAndRefusesAsGKeyFileDoes()
{
    const QByteArrayList pieces{"[G]",  "[",    "]",    "\n",       "\n",     "\r\n", "\r",
                                "a",    "=",    "#",    " ",        "\t",     "\\",   "a=1",
                                "\f",   "\x01", "[de]", "\xc2\xa0", ";",      "\v",   "@",
                                "\xff", "b=2",  "\n\n", "\n[G]\n",  "\na=3\n"};
    const QStringList key{QStringLiteral("G"), QStringLiteral("a")};
    Chooser choose(3);
    int readable = 0;
    for (int i = 0; i < 30000; ++i) {
        QByteArray content = choose.percent(80) ? "[G]\n" : "";
        for (int count = choose.below(8); count > 0; --count)
            content += choose.of(pieces);
        const auto values = readByGLib(content);
        const auto edited = doctor::keyEditor(doctor::Format::DesktopEntry).remove(content, key);
        QVERIFY2(edited.content.has_value() == values.has_value(),
                 content.toPercentEncoding().constData());
        const QString name = key.join(QLatin1Char('/'));
        if (!values)
            continue;
        ++readable;
        // GLib gives no text for bytes that are not UTF-8.
        if (values->contains(name) && !content.contains('\xff'))
            QVERIFY2(m_editor.find(content, key) == values->value(name),
                     content.toPercentEncoding().constData());
    }
    QVERIFY2(readable > 3000, qPrintable(QString::number(readable)));
}

void TestDesktopEditor::changesNothingButTheKey_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *name, const QByteArray &content, const QString &value,
                        const QByteArray &expected) {
        QTest::newRow(name) << content << value << expected;
    };
    const QString plain = QStringLiteral("new");
    row("spaces around the equals sign stay", "[G]\n k\t= old\n", plain, "[G]\n k\t= new\n");
    row("line ends of DOS stay", "[G]\r\nk=old\r\n", plain, "[G]\r\nk=new\r\n");
    row("a missing last line end stays missing", "[G]\nk=old", plain, "[G]\nk=new");
    row("a translation is another key", "[G]\nk[de]=alt\nk=old\n", plain,
        "[G]\nk[de]=alt\nk=new\n");
    row("the last of two groups changes", "[G]\nk=1\n[H]\n[G]\nk=2\n", plain,
        "[G]\nk=1\n[H]\n[G]\nk=new\n");
    row("a list is text", "[G]\nk=a;b;\n", QStringLiteral("b;a;"), "[G]\nk=b;a;\n");
    row("spaces at the ends are escaped", "[G]\nk=1\n", QStringLiteral(" a b "),
        "[G]\nk=\\sa b\\s\n");
    row("line ends, tabs and backslashes are escaped", "[G]\nk=1\n", QStringLiteral("a\n\t\r\\s"),
        "[G]\nk=a\\n\\t\\r\\\\s\n");
    row("a return without a line feed is no line end", "[G]\nz=a\rb\n", plain,
        "[G]\nz=a\rb\nk=new\n");
    row("a key goes behind the last of its group", "[G]\na=1\n\n# about\n[H]\n", plain,
        "[G]\na=1\nk=new\n\n# about\n[H]\n");
    row("a group is added", "# about\n[H]\na=1", plain, "# about\n[H]\na=1\n\n[G]\nk=new");
    row("an empty file gets its first group", "", plain, "[G]\nk=new\n");
    row("a commented key is none", "[G]\n#k=1\n", plain, "[G]\nk=new\n#k=1\n");
}

void TestDesktopEditor::changesNothingButTheKey()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, value);
    QFETCH(QByteArray, expected);
    const QStringList key{QStringLiteral("G"), QStringLiteral("k")};
    QCOMPARE(m_editor.set(content, key, value), expected);
    const auto values = readByGLib(expected);
    QVERIFY(values);
    QCOMPARE(values->value(QStringLiteral("G/k")), value);
}

void TestDesktopEditor::refusesWhatItCannotWrite()
{
    const QByteArray content("[G]\nk=1\n");
    const QString group = QStringLiteral("G");
    const QString text = QStringLiteral("x");
    for (const char16_t character : {u'\0', u'\x01', u'\x7f', u'\xd800'})
        QVERIFY(m_editor.refusesToSet(content, {group, QStringLiteral("k")}, QChar(character)));
    for (const char *name : {"", "a=b", "#a", " a", "a ", "a]", "a[b c]", "[de]", "a\nb", "a[de]x"})
        QVERIFY2(m_editor.refusesToSet(content, {group, QString::fromLatin1(name)}, text), name);
    for (const char *name : {"", "a]", "[a", "a\nb"})
        QVERIFY2(m_editor.refusesToSet(content, {QString::fromLatin1(name), text}, text), name);
}

void TestDesktopEditor::refusesAByteOrderMark()
{
    const QByteArray content("\xef\xbb\xbf[G]\nk=1\n");
    QVERIFY(!readByGLib(content));
    QVERIFY(m_editor.refuses(content, {QStringLiteral("G"), QStringLiteral("k")}));
}

void TestDesktopEditor::hugeContentsEnd()
{
    // What took the square of its time would not end before the test is ended.
    constexpr int size = 1024 * 1024;
    for (const QByteArray &part :
         QByteArrayList{"k=1\n", "[G]\n", "k=", "\\n", " ", "\r", "k[a]=2\n", "#\n"}) {
        const QByteArray content = "[G]\n" + part.repeated(size / part.size()) + "\n";
        const QStringList key{QStringLiteral("G"), QStringLiteral("k")};
        m_editor.find(content, key);
        m_editor.remove(m_editor.set(content, key, QStringLiteral("x")), key);
    }
}

QTEST_GUILESS_MAIN(TestDesktopEditor)

#include "tst_desktopeditor.moc"
