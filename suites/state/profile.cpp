#include "suites/state/profile.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QXmlStreamReader>

#include <algorithm>

#include "doctor/machine/filereading.h"
#include "doctor/machine/packedcopies.h"

namespace suites {

const QString otherPart = QStringLiteral("other");

namespace {

constexpr char keptCopies[] = "/pack/registrymodifications.pack";
constexpr int largestCopy = 4 << 20;
constexpr int mostEntries = 10'000;
constexpr int mostFiles = 200'000;

QString partOf(const QString &name, const Description &description)
{
    const auto found =
        std::find_if(description.parts.begin(), description.parts.end(),
                     [&name](const ProfilePart &part) { return part.names.contains(name); });
    return found == description.parts.end() ? otherPart : found->id;
}

/// Adds an entry of the profile with all that is below it.
void count(const QFileInfo &entry, const doctor::Deadline &deadline, PartSize &part,
           bool &isComplete)
{
    const auto add = [&part](const QFileInfo &file) {
        ++part.files;
        part.bytes += file.isSymLink() ? 0 : file.size();
    };
    if (entry.isSymLink() || !entry.isDir()) {
        add(entry);
        return;
    }
    QDirIterator below(entry.filePath(), QDir::Files | QDir::Hidden | QDir::System,
                       QDirIterator::Subdirectories);
    while (below.hasNext()) {
        if (part.files >= mostFiles || deadline.isOver()) {
            isComplete = false;
            return;
        }
        below.next();
        add(below.fileInfo());
    }
}

bool isWholeXml(const QByteArray &content)
{
    QXmlStreamReader xml(content);
    while (!xml.atEnd())
        xml.readNext();
    return !xml.hasError();
}

void readCopies(const QString &folder, Profile &profile)
{
    const QString path = folder + QLatin1String(keptCopies);
    const doctor::FileContent file = doctor::readFile(path, largestCopy);
    if (!file.content)
        return;
    const QVector<QByteArray> copies = doctor::packedCopies(*file.content, largestCopy);
    profile.goodCopies = static_cast<int>(std::count_if(copies.begin(), copies.end(), &isWholeXml));
    if (profile.goodCopies > 0)
        profile.lastCopy = QFileInfo(path).lastModified().toUTC();
}

/// The names say the time.
QString earlierProfile(const QString &profile, const doctor::Machine &machine)
{
    const QString parent = QFileInfo(profile).path() + QLatin1Char('/');
    const QString start = QFileInfo(profile).fileName() + QLatin1String(earlierEnding);
    QString last;
    for (const QString &name :
         doctor::namesIn(machine.located(parent), mostEntries).value_or(QStringList())) {
        const bool isEarlier =
            name.startsWith(start) && !doctor::namesIn(machine.located(parent + name), mostEntries)
                                           .value_or(QStringList())
                                           .isEmpty();
        if (isEarlier && name > last)
            last = name;
    }
    return last.isEmpty() ? QString() : parent + last;
}

} // namespace

Profile profileOf(const Installation &installation, const doctor::Machine &machine,
                  const doctor::Deadline &deadline)
{
    Profile profile;
    profile.path = installation.profile;
    const QString folder = machine.located(installation.profile);
    const Description *description = descriptionNamed(installation.suite);
    if (profile.path.isEmpty() || !description)
        return profile;
    profile.earlier = earlierProfile(profile.path, machine);
    profile.exists = QFileInfo(folder).isDir();
    if (!profile.exists)
        return profile;
    for (const ProfilePart &part : description->parts)
        profile.parts.append({part.id, {}});
    profile.parts.append({otherPart, {}});
    const auto entries = doctor::namesIn(folder, mostEntries).value_or(QStringList());
    for (const QString &name : entries) {
        const auto part = std::find_if(
            profile.parts.begin(), profile.parts.end(),
            [id = partOf(name, *description)](const PartSize &one) { return one.part == id; });
        part->names.append(name);
        count(QFileInfo(folder + QLatin1Char('/') + name), deadline, *part, profile.isComplete);
    }
    const auto isAbsent = [](const PartSize &part) { return part.names.isEmpty(); };
    profile.parts.erase(std::remove_if(profile.parts.begin(), profile.parts.end(), isAbsent),
                        profile.parts.end());
    readCopies(folder, profile);
    return profile;
}

} // namespace suites
