#include <QRegularExpression>
#include <QXmlStreamReader>

#include "doctor/machine/filereading.h"
#include "doctor/machine/secrets.h"
#include "doctor/probes/facts.h"
#include "doctor/why/open/open.h"
#include "fleet/report/groups.h"
#include "suites/description.h"
#include "suites/installation.h"
#include "texts/texts.h"

namespace fleet {

namespace {

constexpr std::chrono::seconds lookingLimit(5);
constexpr qint64 largestSettings = 64 * 1024 * 1024;
constexpr int longestValue = 512;

QVector<suites::Installation> allInstallations(const doctor::Machine &machine,
                                               doctor::Facts &shared)
{
    const doctor::Deadline deadline(lookingLimit);
    const auto &found = shared.installations(machine, deadline);
    QVector<suites::Installation> all;
    for (const suites::Description &description : suites::descriptions())
        all += found.value(description.id);
    return all;
}

/// Recent documents, sizes of windows and dates: they differ on any two machines.
bool isPassingSetting(const QString &path)
{
    static const QRegularExpression passing(QStringLiteral(
        "/org\\.openoffice\\.Office\\.(Histories|Views|Recovery|UI\\.\\w*WindowState)|"
        "ooSetupLastVersion|LastTimeDonateShown|LastTimeGetInvolvedShown|LastUpdate|LastCheck|"
        "UniqueID|UUID|/FirstRun"));
    return passing.match(path).hasMatch();
}

/// The properties of one <item>.
void readItem(QXmlStreamReader &xml, Facts &facts)
{
    const QString path = xml.attributes().value(QLatin1String("oor:path")).toString();
    QString property;
    while (xml.readNext() != QXmlStreamReader::Invalid) {
        if (xml.isEndElement() && xml.name() == QLatin1String("item"))
            return;
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("prop"))
            property = xml.attributes().value(QLatin1String("oor:name")).toString();
        if (xml.name() != QLatin1String("value") || property.isEmpty())
            continue;
        const QString name = path + QLatin1Char('/') + property;
        const QString value =
            xml.readElementText(QXmlStreamReader::IncludeChildElements).left(longestValue);
        if (!isPassingSetting(name))
            facts.insert(name, doctor::withoutSecret(property, value));
    }
}

} // namespace

Facts packageFacts(const doctor::Machine &machine, doctor::Facts &shared)
{
    static const QRegularExpression wanted(QStringLiteral(
        "\\A(libreoffice|lib(gtk-[34]|qt[56](gui|widgets)|freetype|fontconfig|cups2|harfbuzz0b|"
        "cairo2|gl1-mesa|officeassistant|helio)|office-assistant|fonts-|ttf-|fcitx|ibus|uim|scim|"
        "im-config|mozc|anthy|hime|gnome-shell|gnome-session|plasma-|kwin|xfce4-session|cinnamon|"
        "mate-session|lxqt-session|mutter|weston|sway|xserver-xorg|xwayland|mesa|nvidia|"
        "xdg-desktop-portal|xdg-utils|shared-mime-info|desktop-file-utils|cups|printer-driver|"
        "ghostscript|poppler|hunspell|hyphen-|mythes|aspell|openjdk|default-jre|python3-uno|ure|"
        "gvfs|flatpak|snapd|locales|fontconfig|apparmor|dbus|pipewire|wireplumber)"));
    Facts facts;
    const auto &packages = shared.debianPackages(machine);
    for (auto package = packages.begin(); package != packages.end(); ++package) {
        if (wanted.match(package.key()).hasMatch())
            facts.insert(package.key(), package->version);
    }
    return facts;
}

Facts fontFacts(const doctor::Machine &machine, doctor::Facts &shared)
{
    Facts facts;
    const auto &families = shared.fontFamilies(machine, doctor::Deadline(lookingLimit));
    for (auto family = families.begin(); family != families.end(); ++family)
        facts.insert(family.key(), QStringLiteral("installed"));
    return facts;
}

Facts suiteFacts(const doctor::Machine &machine, doctor::Facts &shared)
{
    Facts facts;
    const QVector<suites::Installation> all = allInstallations(machine, shared);
    for (const suites::Installation &one : all) {
        const QString name = QStringLiteral("%1 in %2").arg(one.name, one.folder);
        facts.insert(name, one.version);
        facts.insert(name + QStringLiteral(": components"),
                     one.components.join(QStringLiteral(", ")));
        facts.insert(name + QStringLiteral(": plug-ins"), one.plugins.join(QStringLiteral(", ")));
        facts.insert(name + QStringLiteral(": languages"),
                     one.languages.join(QStringLiteral(", ")));
    }
    const std::optional<suites::Installation> chosen = suites::chosen(all, machine);
    if (chosen)
        facts.insert(QStringLiteral("looked after"), chosen->folder);
    return facts;
}

Facts suiteSettings(const doctor::Machine &machine, doctor::Facts &shared, QStringList &unknown)
{
    const std::optional<suites::Installation> chosen =
        suites::chosen(allInstallations(machine, shared), machine);
    Facts facts;
    if (!chosen || chosen->profile.isEmpty())
        return facts;
    const QString path = chosen->profile + QStringLiteral("/registrymodifications.xcu");
    const doctor::FileContent file = doctor::readFile(machine.located(path), largestSettings);
    if (!file.content)
        return facts;
    QXmlStreamReader xml(*file.content);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::DTD)
            xml.raiseError(texts::tr("it has a document type"));
        if (xml.isStartElement() && xml.name() == QLatin1String("item"))
            readItem(xml, facts);
    }
    if (xml.hasError())
        unknown.append(path + QStringLiteral(": ") + xml.errorString());
    return facts;
}

Facts associationFacts(const doctor::Machine &machine)
{
    Facts facts;
    const doctor::OpenQuestion question(machine);
    for (const doctor::SuffixOpening &row : question.ofSuffixes()) {
        if (!row.type.isEmpty())
            facts.insert(row.suffix, row.gio.entry);
    }
    return facts;
}

} // namespace fleet
