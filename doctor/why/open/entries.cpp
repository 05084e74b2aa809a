#include "doctor/why/open/entries.h"

#include <QFile>

#include <algorithm>

#include <sys/stat.h>
#include <unistd.h>

#include "doctor/machine/filereading.h"
#include "doctor/why/open/keyfile.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr qint64 largestEntry = 1024 * 1024;
constexpr int mostEntries = 50000;
constexpr int deepest = 8;
constexpr char mainGroup[] = "Desktop Entry";

bool isDirectory(const QString &path)
{
    struct stat state = {};
    return ::stat(QFile::encodeName(path).constData(), &state) == 0 && S_ISDIR(state.st_mode);
}

bool isTrue(const KeyFile &file, const char *key)
{
    return file.text(mainGroup, key).value_or(QString()).trimmed() == QLatin1String("true");
}

bool hasAny(const KeyFile &file, const char *key, const QStringList &desktops)
{
    const QStringList named =
        file.text(mainGroup, key).value_or(QString()).split(QLatin1Char(';'), Qt::SkipEmptyParts);
    return std::any_of(desktops.begin(), desktops.end(),
                       [&named](const QString &desktop) { return named.contains(desktop); });
}

bool isShownIn(const KeyFile &file, const QStringList &desktops)
{
    return file.text(mainGroup, "OnlyShowIn") ? hasAny(file, "OnlyShowIn", desktops)
                                              : !hasAny(file, "NotShowIn", desktops);
}

/// Reads one word of a command line as g_shell_parse_argv() does. False if a quote has no end.
bool readWord(const QString &text, int &position, QString &word)
{
    QChar quote;
    for (; position < text.size(); ++position) {
        const QChar each = text.at(position);
        const bool isLast = position + 1 >= text.size();
        if (quote.isNull() && each.isSpace())
            return true;
        if (each == quote) {
            quote = QChar();
        } else if (quote.isNull() && (each == QLatin1Char('"') || each == QLatin1Char('\''))) {
            quote = each;
        } else if (each == QLatin1Char('\\') && quote != QLatin1Char('\'')) {
            if (isLast)
                return false;
            const QChar next = text.at(position + 1);
            if (quote == QLatin1Char('"') && !QStringLiteral("\"`$\\\n").contains(next))
                word += each;
            word += next;
            ++position;
        } else {
            word += each;
        }
    }
    return quote.isNull();
}

} // namespace

QString programOf(const QString &commandLine)
{
    QString program;
    bool isFirst = true;
    for (int position = 0; position < commandLine.size(); ++position) {
        if (commandLine.at(position).isSpace())
            continue;
        QString word;
        if (commandLine.at(position) == QLatin1Char('#'))
            break;
        if (!readWord(commandLine, position, word))
            return {};
        if (isFirst)
            program = word;
        isFirst = false;
    }
    return program;
}

QString entryProblem(const DesktopEntry &entry)
{
    switch (entry.state) {
    case EntryState::Works:
        return {};
    case EntryState::Missing:
        return texts::tr("it is not installed");
    case EntryState::Unreadable:
        return texts::tr("%1 cannot be read as a desktop entry").arg(entry.path);
    case EntryState::NotApplication:
        return texts::tr("%1 is not the desktop entry of an application").arg(entry.path);
    case EntryState::TryExecFails:
        return texts::tr("%1 asks for the program %2, which is not there")
            .arg(entry.path, entry.program);
    case EntryState::ExecFails:
        break;
    }
    return entry.program.isEmpty()
               ? texts::tr("the command line in %1 cannot be read").arg(entry.path)
               : texts::tr("%1 starts the program %2, which is not there")
                     .arg(entry.path, entry.program);
}

DesktopEntries::DesktopEntries(const OpenPlaces &places) : m_places(places)
{
    for (const QString &folder : places.data) {
        QHash<QString, QString> names;
        addFolder(folder + QStringLiteral("/applications"), {}, 0, names);
        m_folders.append(names);
    }
}

void DesktopEntries::addFolder(const QString &folder, const QString &prefix, int depth,
                               QHash<QString, QString> &names)
{
    const QString located = m_places.machine.located(folder);
    // What may not be read is passed over, as GLib does.
    if (!isDirectory(located) || ::access(QFile::encodeName(located).constData(), R_OK) != 0)
        return;
    const std::optional<QStringList> found = namesIn(located, mostEntries);
    m_isIncomplete = m_isIncomplete || !found || depth > deepest || names.size() > mostEntries;
    if (!found || depth > deepest || names.size() > mostEntries)
        return;
    for (const QString &name : *found) {
        const QString path = folder + QLatin1Char('/') + name;
        if (name.endsWith(QLatin1String(".desktop")))
            names.insert(prefix + name, path);
        else if (isDirectory(m_places.machine.located(path)))
            addFolder(path, prefix + name + QLatin1Char('-'), depth + 1, names);
    }
}

DesktopEntry DesktopEntries::read(const QString &path) const
{
    DesktopEntry entry;
    entry.path = path;
    entry.state = EntryState::Unreadable;
    const FileContent content = readFile(m_places.machine.located(path), largestEntry);
    const KeyFile file = parseKeyFile(content.content.value_or(QByteArray()));
    if (!content.content || file.brokenLine > 0)
        return entry;
    entry.isHidden = isTrue(file, "Hidden");
    entry.hasNoDisplay = isTrue(file, "NoDisplay");
    entry.isShown = isShownIn(file, m_places.desktops);
    entry.types = file.text(mainGroup, "MimeType")
                      .value_or(QString())
                      .split(QLatin1Char(';'), Qt::SkipEmptyParts);
    entry.state = EntryState::NotApplication;
    if (file.firstGroup != mainGroup ||
        file.text(mainGroup, "Type").value_or(QString()) != QLatin1String("Application"))
        return entry;
    entry.program = file.text(mainGroup, "TryExec").value_or(QString());
    entry.state = EntryState::TryExecFails;
    if (!entry.program.isEmpty() && !m_places.hasProgram(entry.program))
        return entry;
    const QString command = file.text(mainGroup, "Exec").value_or(QString());
    entry.program = programOf(command);
    const bool canRun =
        command.isEmpty() || (!entry.program.isEmpty() && m_places.hasProgram(entry.program));
    entry.state = canRun ? EntryState::Works : EntryState::ExecFails;
    return entry;
}

const DesktopEntry &DesktopEntries::entry(const QString &name) const
{
    const auto known = m_entries.constFind(name);
    if (known != m_entries.constEnd())
        return *known;
    DesktopEntry found;
    for (const QHash<QString, QString> &names : m_folders) {
        const auto path = names.constFind(name);
        if (path == names.constEnd() || found.state == EntryState::Works)
            continue;
        const DesktopEntry read = this->read(*path);
        if (found.state == EntryState::Missing || read.state == EntryState::Works)
            found = read;
    }
    return *m_entries.insert(name, found);
}

QStringList DesktopEntries::namesWith(const QString &beginning) const
{
    QStringList found;
    for (const QHash<QString, QString> &names : m_folders) {
        for (auto name = names.keyBegin(); name != names.keyEnd(); ++name) {
            if (name->startsWith(beginning) && !found.contains(*name))
                found.append(*name);
        }
    }
    found.sort();
    return found;
}

bool DesktopEntries::isMasked(const QString &name, int dataFolder) const
{
    const auto end = m_folders.begin() + std::max(dataFolder, 0);
    return std::any_of(m_folders.begin(), end, [&name](const QHash<QString, QString> &names) {
        return names.contains(name);
    });
}

} // namespace doctor
