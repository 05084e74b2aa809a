#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>
#include <QXmlStreamReader>

#include "suites/addons/parts.h"
#include "texts/texts.h"

namespace suites {

namespace {

constexpr int mostFiles = 2000;

/// What a macro's source uses, as far as its words tell.
void readUses(Addon &addon, QString source)
{
    static const QRegularExpression comments(QStringLiteral("^\\s*('|#|REM\\b).*$"),
                                             QRegularExpression::MultilineOption |
                                                 QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression programs(
        QStringLiteral("\\bShell\\s*\\(|SystemShellExecute|\\bsubprocess\\b|os\\.system"));
    static const QRegularExpression network(
        QStringLiteral("https?://|\\burllib\\b|\\bsocket\\b|\\brequests\\b"));
    static const QRegularExpression files(
        QStringLiteral("\\bFor\\s+Output\\b|\\bKill\\s|SimpleFileAccess|\\bopen\\s*\\("),
        QRegularExpression::CaseInsensitiveOption);
    source.remove(comments);
    const auto note = [&](const QRegularExpression &words, const QString &use) {
        if (source.contains(words) && !addon.uses.contains(use))
            addon.uses.append(use);
    };
    note(programs, texts::tr("starts other programs"));
    note(network, texts::tr("uses addresses of the network"));
    note(files, texts::tr("reads or changes files"));
}

/// The source in a module; a fault if the module is damaged.
QString moduleSource(Addon &addon, const QString &path)
{
    QXmlStreamReader xml(addonFile(path));
    QString source;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::Characters)
            source += xml.text();
    }
    if (xml.hasError())
        addon.faults.append(
            texts::tr("the module %1 is missing or damaged").arg(QFileInfo(path).baseName()));
    return source;
}

Addon library(const QString &folder, const QString &name, const QString &owner)
{
    Addon addon;
    addon.name = name;
    addon.owner = owner;
    addon.path = folder + QLatin1Char('/') + name;
    QXmlStreamReader xml(addonFile(addon.path + QStringLiteral("/script.xlb")));
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement ||
            xml.name() != QLatin1String("element"))
            continue;
        const QString module = xml.attributes().value(QStringLiteral("library:name")).toString();
        readUses(addon, moduleSource(addon, addon.path + QLatin1Char('/') + module +
                                                QStringLiteral(".xba")));
    }
    if (xml.hasError())
        addon.faults.append(texts::tr("its list of modules is missing or damaged"));
    return addon;
}

void appendPython(QVector<Addon> &macros, const QString &folder, const QString &owner)
{
    const QDir scripts(folder + QStringLiteral("/Scripts/python"));
    for (const QString &name : scripts.entryList({QStringLiteral("*.py")}, QDir::Files)) {
        if (macros.size() >= mostFiles)
            return;
        Addon addon;
        addon.name = name;
        addon.owner = owner;
        addon.path = scripts.filePath(name);
        addon.uses.append(texts::tr("runs Python code"));
        readUses(addon, QString::fromUtf8(addonFile(addon.path)));
        macros.append(addon);
    }
}

/// Whether the file of a macro's address is there; those of documents and extensions are not
/// looked for.
bool hasTarget(const QString &address, const QString &profile)
{
    const QString name = QUrl(address).path();
    const QStringList parts = name.split(QLatin1Char('.'));
    const bool isOwn = address.contains(QLatin1String("location=application")) &&
                       address.contains(QLatin1String("language=Basic")) && parts.size() == 3;
    const QString folder = profile + QStringLiteral("/basic/") + parts.first();
    // Libraries of all users are beside the program.
    return !isOwn || !QFileInfo::exists(folder) ||
           QFileInfo::exists(folder + QLatin1Char('/') + parts.at(1) + QStringLiteral(".xba"));
}

} // namespace

QVector<Addon> macrosIn(const QString &folder, const QString &owner)
{
    QVector<Addon> macros;
    const QString basic = folder + QStringLiteral("/basic");
    QXmlStreamReader xml(addonFile(basic + QStringLiteral("/script.xlc")));
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement ||
            xml.name() != QLatin1String("library"))
            continue;
        const auto attributes = xml.attributes();
        const QString link = attributes.value(QStringLiteral("xlink:href")).toString();
        // The user's list names the libraries of all users too.
        if (!link.startsWith(QLatin1String("$(INST)")) || owner != QLatin1String("user"))
            macros.append(
                library(basic, attributes.value(QStringLiteral("library:name")).toString(), owner));
    }
    appendPython(macros, folder, owner);
    return macros;
}

QVector<Addon> eventsOf(const QString &profile)
{
    static const QRegularExpression binding(
        QStringLiteral("Events/ApplicationEvents/Bindings/[\\w.]+:BindingType\\['(\\w+)'\\]\".*?"
                       "<value>([^<]*)</value>"));
    QVector<Addon> events;
    const QString settings =
        QString::fromUtf8(addonFile(profile + QStringLiteral("/registrymodifications.xcu")));
    auto matches = binding.globalMatch(settings);
    while (matches.hasNext() && events.size() < mostFiles) {
        const QRegularExpressionMatch match = matches.next();
        Addon event;
        event.name = match.captured(1);
        event.owner = QStringLiteral("user");
        event.path = match.captured(2).replace(QLatin1String("&amp;"), QLatin1String("&"));
        if (event.path.isEmpty())
            continue;
        if (!hasTarget(event.path, profile))
            event.faults.append(texts::tr("the macro that it starts is not there"));
        events.append(event);
    }
    return events;
}

} // namespace suites
