#include <QFileInfo>
#include <QtEndian>

#include "doctor/machine/filereading.h"
#include "doctor/probes/facts.h"
#include "doctor/probes/kinds.h"

namespace doctor {

namespace {

constexpr int deepestFolder = 6;
constexpr int mostNames = 20000;
constexpr int mostFaces = 64;
constexpr int mostTables = 64;
constexpr qint64 largestNames = 256 * 1024;
/// Of the "name" table: family, and family of all styles together.
constexpr quint16 familyName = 1;
constexpr quint16 typographicFamilyName = 16;

quint32 longAt(const QByteArray &bytes, int offset)
{
    return offset + 4 <= bytes.size() ? qFromBigEndian<quint32>(bytes.constData() + offset) : 0;
}

quint16 shortAt(const QByteArray &bytes, int offset)
{
    return offset + 2 <= bytes.size() ? qFromBigEndian<quint16>(bytes.constData() + offset) : 0;
}

/// The families in a "name" table (ISO 14496-22), in all languages.
void addFamilies(const QByteArray &table, const QString &path, QHash<QString, QString> &families)
{
    const int count = shortAt(table, 2);
    const int storage = shortAt(table, 4);
    for (int i = 0; i < count; ++i) {
        const int record = 6 + i * 12;
        const quint16 kind = shortAt(table, record + 6);
        if (kind != familyName && kind != typographicFamilyName)
            continue;
        const QByteArray bytes =
            table.mid(storage + shortAt(table, record + 10), shortAt(table, record + 8));
        // Platform 1 is of old, one byte a character; the others have UTF-16.
        QString name;
        if (shortAt(table, record) == 1) {
            name = QString::fromLatin1(bytes);
        } else {
            for (int at = 0; at + 1 < bytes.size(); at += 2)
                name += QChar(shortAt(bytes, at));
        }
        if (!name.isEmpty() && !families.contains(name.toLower()))
            families.insert(name.toLower(), path);
    }
}

void addFace(const QString &located, quint32 offset, const QString &path,
             QHash<QString, QString> &families)
{
    const QByteArray directory =
        readPart(located, offset, 12 + mostTables * 16).content.value_or(QByteArray());
    const int count = std::min<int>(shortAt(directory, 4), mostTables);
    for (int i = 0; i < count; ++i) {
        const int entry = 12 + i * 16;
        if (directory.mid(entry, 4) != "name")
            continue;
        const qint64 length = std::min<qint64>(longAt(directory, entry + 12), largestNames);
        addFamilies(
            readPart(located, longAt(directory, entry + 8), length).content.value_or(QByteArray()),
            path, families);
        return;
    }
}

void addFile(const Machine &machine, const QString &path, QHash<QString, QString> &families)
{
    const QString located = machine.located(path);
    const QByteArray header =
        readPart(located, 0, 12 + mostFaces * 4).content.value_or(QByteArray());
    if (!header.startsWith("ttcf")) {
        addFace(located, 0, path, families);
        return;
    }
    const int faces = static_cast<int>(std::min<quint32>(longAt(header, 8), mostFaces));
    for (int i = 0; i < faces; ++i)
        addFace(located, longAt(header, 12 + i * 4), path, families);
}

bool isFontFile(const QString &name)
{
    for (const char *ending : {".ttf", ".otf", ".ttc", ".otc"}) {
        if (name.endsWith(QLatin1String(ending), Qt::CaseInsensitive))
            return true;
    }
    return false;
}

/// Fonts below a folder.
class FontFolders
{
public:
    FontFolders(const Machine &machine, const Deadline &deadline, QHash<QString, QString> &families)
        : m_machine(machine), m_deadline(deadline), m_families(families)
    {
    }

    void read(const QString &folder, int depth = 0)
    {
        const QString located = m_machine.located(folder);
        const QStringList names = namesIn(located, mostNames).value_or(QStringList());
        for (const QString &name : names) {
            if (m_deadline.isOver() || ++m_seen > mostNames)
                return;
            const QString path = folder + QLatin1Char('/') + name;
            if (isFontFile(name))
                addFile(m_machine, path, m_families);
            else if (depth < deepestFolder && QFileInfo(m_machine.located(path)).isDir())
                read(path, depth + 1);
        }
    }

private:
    const Machine &m_machine;
    const Deadline &m_deadline;
    QHash<QString, QString> &m_families;
    int m_seen = 0;
};

/// Read from the fonts themselves: asking fontconfig may write its cache.
Observed lookAtFont(const Arguments &arguments, const Looking &looking)
{
    const QHash<QString, QString> &families =
        looking.facts.fontFamilies(looking.machine, looking.deadline);
    Observed observed;
    for (const QString &name : arguments.texts("font")) {
        const QString path = families.value(name.toLower());
        Observation seen;
        if (!path.isEmpty())
            seen.where.append({path, 0, 0});
        seen.values = {{QStringLiteral("family"), Value::ofText(name)},
                       {QStringLiteral("installed"), Value::ofFlag(!path.isEmpty())},
                       {QStringLiteral("path"), Value::ofText(path)}};
        observed.seen.append(seen);
    }
    return observed;
}

constexpr Parameter parameters[] = {{"font", ParameterType::Texts, true}};
constexpr ProbeValue values[] = {
    {"family", ValueType::Text}, {"installed", ValueType::Flag}, {"path", ValueType::Text}};

} // namespace

const QHash<QString, QString> &Facts::fontFamilies(const Machine &machine, const Deadline &deadline)
{
    std::call_once(m_fontsRead, [&] {
        FontFolders folders(machine, deadline, m_fonts);
        folders.read(machine.variable(QStringLiteral("XDG_DATA_HOME")).value_or(QString()) +
                     QStringLiteral("/fonts"));
        folders.read(machine.home() + QStringLiteral("/.fonts"));
        folders.read(QStringLiteral("/usr/share/fonts"));
        folders.read(QStringLiteral("/usr/local/share/fonts"));
    });
    return m_fonts;
}

const ProbeKind fontKind{"font", parameters, values, &lookAtFont};

} // namespace doctor
