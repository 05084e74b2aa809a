#include <QTemporaryDir>
#include <QtEndian>

#include "tests/programs/missingfonts/compoundbuilder.h"
#include "tests/programs/missingfonts/documentfamilies.h"
#include "tests/support/shell/headlesstest.h"

namespace {

QByteArray number(quint32 value, int bytes)
{
    QByteArray result;
    for (int n = 0; n < bytes; ++n)
        result.append(char(value >> (8 * n)));
    return result;
}

QByteArray utf16(const QString &text)
{
    QByteArray result;
    for (const QChar c : text)
        result += number(c.unicode(), 2);
    return result;
}

} // namespace

/// The fonts of documents in the older binary formats.
class OleFontsTest : public QObject
{
    Q_OBJECT

private slots:
    void textDocumentsNameFontsInATable()
    {
        QCOMPARE(familiesOf(textDocument(0)),
                 (QStringList{QStringLiteral("Narrow"), QStringLiteral("宋体")}));
    }

    void encryptedTextDocumentsAreRefused()
    {
        QCOMPARE(familiesOf(textDocument(0x0100)), refusal("the document is encrypted"));
    }

    void workbooksNameFontsInRecords()
    {
        const QByteArray narrow = QByteArray(14, '\0') + number(6, 1) + number(0, 1) + "Narrow";
        const QByteArray wide =
            QByteArray(14, '\0') + number(2, 1) + number(1, 1) + utf16(QStringLiteral("宋体"));
        const QByteArray book = record(0x809, number(0x600, 2) + QByteArray(14, '\0')) +
                                record(0x31, narrow) + record(0x31, wide) + record(0x0A, {}) +
                                record(0x809, number(0x600, 2)) +
                                record(0x31, narrow.left(16) + "Chart!");
        QCOMPARE(familiesOf({{QStringLiteral("Workbook"), book}}),
                 (QStringList{QStringLiteral("Narrow"), QStringLiteral("宋体")}));
        QCOMPARE(familiesOf({{QStringLiteral("Workbook"),
                              record(0x809, number(0x600, 2)) + record(0x2F, QByteArray(8, 'x'))}}),
                 refusal("the document is encrypted"));
    }

    void presentationsNameFontsInACollection()
    {
        const auto entity = [](const QString &name) {
            return atom(4023, (utf16(name) + QByteArray(68, '\0')).left(68));
        };
        const QByteArray collection = entity(QStringLiteral("Shown")) + atom(4024, "font data") +
                                      entity(QStringLiteral("宋体"));
        const QByteArray document =
            atom(1000, atom(1001, "other") + atom(1010, atom(2005, collection))) +
            atom(1006, entity(QStringLiteral("Elsewhere")));
        // The first font is carried by the presentation.
        QCOMPARE(familiesOf({{QStringLiteral("PowerPoint Document"), document}}),
                 QStringList{QStringLiteral("宋体")});
    }

    void bigStreamsAreReadToo()
    {
        const QByteArray filler = record(0x99, QByteArray(8000, 'x')).repeated(20);
        const QByteArray font = QByteArray(14, '\0') + number(3, 1) + number(0, 1) + "Far";
        QCOMPARE(familiesOf({{QStringLiteral("Workbook"),
                              record(0x809, number(0x600, 2)) + filler + record(0x31, font)}}),
                 QStringList{QStringLiteral("Far")});
    }

    void embeddedDocumentsDoNotCount()
    {
        // A workbook that holds a text document; its storage comes first.
        testsupport::CompoundStreams streams;
        for (const auto &[name, content] : textDocument(0))
            streams.push_back({QStringLiteral("Embedded/") + name, content});
        const QByteArray font = QByteArray(14, '\0') + number(4, 1) + number(0, 1) + "Cell";
        const QByteArray book = record(0x809, number(0x600, 2)) + record(0x31, font);
        streams.push_back({QStringLiteral("Workbook"), book});
        QCOMPARE(familiesOf(streams), QStringList{QStringLiteral("Cell")});
        // Nothing but the embedded one.
        streams.pop_back();
        QCOMPARE(familiesOf(streams), refusal("the document is of a format that cannot be read"));
    }

    void chainsLongerThanTheFileAreRefused()
    {
        const QStringList damaged = refusal("the document's file structure is damaged");
        // The list of the tables' sectors leads to itself, and names none.
        QByteArray lists = testsupport::compoundFile(textDocument(0)).left(512) +
                           QByteArray(508, '\xFF') + number(0, 4);
        lists.replace(68, 8, number(0, 4) + number(0xFFFFFFFF, 4));
        lists.replace(76, 436, QByteArray(436, '\xFF'));
        QCOMPARE(familiesOfFile(lists), damaged);
        // The only sector of the small streams stands two thousand million bytes into theirs.
        QByteArray small = testsupport::compoundFile({{QStringLiteral("WordDocument"), "x"}});
        const int entry = small.indexOf(utf16(QStringLiteral("WordDocument")));
        small.replace(entry + 116, 4, number(0x02000000, 4));
        const int root = small.indexOf(utf16(QStringLiteral("Root Entry")));
        const int chain = 512 + 4 * int(qFromLittleEndian<quint32>(small.constData() + root + 116));
        small.replace(chain, 4, number(quint32(chain - 512) / 4, 4));
        QCOMPARE(familiesOfFile(small), damaged);
    }

    void otherDocumentsAreRefusedClearly()
    {
        QCOMPARE(familiesOf({{QStringLiteral("EncryptedPackage"), "x"}}),
                 refusal("the document is encrypted"));
        QCOMPARE(familiesOf({{QStringLiteral("Contents"), "x"}}),
                 refusal("the document is of a format that cannot be read"));
        QCOMPARE(familiesOf({{QStringLiteral("Book"), "x"}}),
                 refusal("the workbook is older than the formats that can be read"));
    }

    void truncatedAndGarbledFilesEndInAnError()
    {
        const QByteArray whole = testsupport::compoundFile(textDocument(0));
        for (int size = 0; size < whole.size(); size += 97) {
            const QStringList families = familiesOfFile(whole.left(size));
            QVERIFY2(families.value(0).startsWith(QLatin1String("error: ")) ||
                         families.contains(QStringLiteral("Narrow")),
                     qPrintable(QString::number(size)));
        }
        // Every chain of sectors leads back into itself.
        QByteArray circular = whole;
        for (int at = 512; at + 4 <= 1024; at += 4)
            circular.replace(at, 4, number(0, 4));
        QCOMPARE(familiesOfFile(circular), refusal("the document's file structure is damaged"));
    }

private:
    static QStringList refusal(const char *reason)
    {
        return {QStringLiteral("error: ") + QLatin1String(reason)};
    }

    static QByteArray record(quint32 type, const QByteArray &content)
    {
        return number(type, 2) + number(quint32(content.size()), 2) + content;
    }

    static QByteArray atom(quint32 type, const QByteArray &content)
    {
        return number(0, 2) + number(type, 2) + number(quint32(content.size()), 4) + content;
    }

    static testsupport::CompoundStreams textDocument(quint32 flags)
    {
        const auto entry = [](const QString &name) {
            const QByteArray content = QByteArray(39, '\0') + utf16(name) + QByteArray(2, '\0');
            return number(quint32(content.size()), 1) + content;
        };
        const QByteArray table = number(2, 2) + number(0, 2) + entry(QStringLiteral("Narrow")) +
                                 entry(QStringLiteral("宋体"));
        const QByteArray before(300, 'x');
        QByteArray header(0x120, '\0');
        header.replace(0, 2, number(0xA5EC, 2));
        header.replace(10, 2, number(flags | 0x0200, 2));
        header.replace(0x112, 8,
                       number(quint32(before.size()), 4) + number(quint32(table.size()), 4));
        return {{QStringLiteral("WordDocument"), header},
                {QStringLiteral("1Table"), before + table}};
    }

    QStringList familiesOf(const testsupport::CompoundStreams &streams)
    {
        return familiesOfFile(testsupport::compoundFile(streams));
    }

    QStringList familiesOfFile(const QByteArray &content)
    {
        const QString path = m_directory.filePath(QStringLiteral("document.doc"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(path));
        file.close();
        return testsupport::documentFamilies(path);
    }

    QTemporaryDir m_directory;
};

HEADLESS_TEST_MAIN(OleFontsTest)
#include "tst_olefonts.moc"
