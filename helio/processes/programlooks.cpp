#include "helio/processes/programlooks.h"

#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <array>
#include <optional>

#include "doctor/machine/filereading.h"
#include "doctor/why/open/entries.h"
#include "doctor/why/open/keyfile.h"

namespace helio {

namespace {

constexpr int mostPrograms = 500;
constexpr qint64 largestEntry = 256 * 1024;
constexpr qint64 largestIcon = 64 * 1024;

struct Look
{
    QString title;
    QString icon;
    /// Words of the command line: the entry that starts the program itself has the fewest.
    int words = 0;
};

/// "soffice" for "soffice.bin" and "firefox" for "firefox-bin": scripts start what is named so.
QString started(QString file)
{
    for (const QString &ending : {QStringLiteral(".bin"), QStringLiteral("-bin")}) {
        if (file.endsWith(ending))
            file.chop(ending.size());
    }
    return file;
}

/// The file behind a program's name, without directories.
QString fileOf(const QString &program, const doctor::OpenPlaces &places)
{
    const auto behind = [&places](const QString &path) {
        const QString target = QFileInfo(places.machine.located(path)).canonicalFilePath();
        return target.section(QLatin1Char('/'), -1);
    };
    if (program.startsWith(QLatin1Char('/')))
        return behind(program);
    for (const QString &directory : places.programs) {
        const QString file = behind(directory + QLatin1Char('/') + program);
        if (!file.isEmpty())
            return file;
    }
    return {};
}

/// The main group of a desktop entry, translations included.
QHash<QByteArray, QString> mainGroup(const QByteArray &content)
{
    QHash<QByteArray, QString> values;
    bool isMain = false;
    const QList<QByteArray> lines = content.split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith('['))
            isMain = line.trimmed() == "[Desktop Entry]";
        const int sign = line.indexOf('=');
        if (isMain && sign > 0)
            values.insert(line.left(sign).trimmed(),
                          doctor::textValue(line.mid(sign + 1).trimmed()).value_or(QString()));
    }
    return values;
}

struct ReadLook
{
    Look look;
    bool isInMenus = false;
};

ReadLook readLook(const QString &path, const QString &language)
{
    const QHash<QByteArray, QString> values =
        mainGroup(doctor::readFile(path, largestEntry).content.value_or(QByteArray()));
    const QString command = values.value("Exec");
    const QByteArray exact = "Name[" + language.toUtf8() + ']';
    const QByteArray general = "Name[" + language.section(QLatin1Char('_'), 0, 0).toUtf8() + ']';
    Look look;
    look.title = values.value(exact, values.value(general, values.value("Name")));
    look.icon = values.value("Icon");
    look.words = command.count(QLatin1Char(' '));
    return {look, !command.isEmpty() && values.value("NoDisplay") != QLatin1String("true")};
}

/// All programs that entries of the session start, by the file behind their name.
QHash<QString, Look> looksOfSession(const QString &language, const doctor::OpenPlaces &places)
{
    const doctor::DesktopEntries entries(places);
    QHash<QString, Look> looks;
    for (int folder = 0; folder < places.data.size(); ++folder) {
        const QHash<QString, QString> &names = entries.names(folder);
        for (auto name = names.begin(); name != names.end(); ++name) {
            const doctor::DesktopEntry &entry = entries.entry(name.key());
            const ReadLook read = readLook(*name, language);
            if (!read.isInMenus || entries.isMasked(name.key(), folder))
                continue;
            const Look &look = read.look;
            const QString program = started(fileOf(entry.program, places));
            const auto known = looks.find(program);
            if (!program.isEmpty() && (known == looks.end() || look.words < known->words))
                looks.insert(program, look);
        }
    }
    return looks;
}

/// An icon of the fallback theme, in the size nearest to that of a line of text.
QString iconFile(const QString &icon, const doctor::OpenPlaces &places)
{
    if (icon.startsWith(QLatin1Char('/')))
        return places.machine.located(icon);
    static const std::array<QLatin1String, 6> sizes{
        QLatin1String("32x32"), QLatin1String("48x48"),    QLatin1String("24x24"),
        QLatin1String("64x64"), QLatin1String("scalable"), QLatin1String("128x128")};
    QStringList candidates;
    for (const QString &data : places.data) {
        for (const QLatin1String size : sizes) {
            const QString path =
                data + QStringLiteral("/icons/hicolor/") + size + QStringLiteral("/apps/") + icon;
            candidates << path + QStringLiteral(".png") << path + QStringLiteral(".svg");
        }
        candidates << data + QStringLiteral("/pixmaps/") + icon + QStringLiteral(".png");
    }
    for (const QString &candidate : qAsConst(candidates)) {
        if (QFileInfo::exists(places.machine.located(candidate)))
            return places.machine.located(candidate);
    }
    return {};
}

QString dataAddress(const QString &file)
{
    const std::optional<QByteArray> content = doctor::readFile(file, largestIcon).content;
    if (!content)
        return {};
    const bool isDrawing = file.endsWith(QLatin1String(".svg"));
    return QStringLiteral("data:image/%1;base64,")
               .arg(isDrawing ? QStringLiteral("svg+xml") : QStringLiteral("png")) +
           QString::fromLatin1(content->toBase64());
}

QJsonObject shownLook(const Look &look, const doctor::OpenPlaces &places)
{
    QJsonObject shown{{QStringLiteral("title"), look.title}};
    const QString file = look.icon.isEmpty() ? QString() : iconFile(look.icon, places);
    if (!file.isEmpty())
        shown.insert(QStringLiteral("icon"), dataAddress(file));
    return shown;
}

} // namespace

QJsonObject programLooks(const QStringList &programs, const QString &language,
                         const doctor::Machine &machine)
{
    const doctor::OpenPlaces places = doctor::openPlaces(machine);
    const QHash<QString, Look> looks = looksOfSession(language, places);
    QJsonObject shown;
    for (const QString &program : programs.mid(0, mostPrograms)) {
        const auto look = looks.find(started(program));
        if (look != looks.end())
            shown.insert(program, shownLook(*look, places));
    }
    return shown;
}

QJsonObject entryLooks(const QStringList &names, const QString &language,
                       const doctor::Machine &machine)
{
    const doctor::OpenPlaces places = doctor::openPlaces(machine);
    const doctor::DesktopEntries entries(places);
    QJsonObject shown;
    for (const QString &name : names) {
        const doctor::DesktopEntry &entry = entries.entry(name);
        if (entry.state == doctor::EntryState::Works && !shown.contains(name))
            shown.insert(name, shownLook(readLook(entry.path, language).look, places));
    }
    return shown;
}

QJsonObject fileLooks(const QMap<QString, QString> &files, const QString &language,
                      const doctor::Machine &machine)
{
    const doctor::OpenPlaces places = doctor::openPlaces(machine);
    QJsonObject shown;
    for (auto file = files.begin(); file != files.end(); ++file)
        shown.insert(file.key(),
                     shownLook(readLook(machine.located(*file), language).look, places));
    return shown;
}

} // namespace helio
