#include "doctor/why/open/filetype.h"

#include <QFile>
#include <QXmlStreamReader>

#include <algorithm>

#include <sys/stat.h>

#include "doctor/machine/filereading.h"
#include "doctor/why/open/magic.h"

namespace doctor {

namespace {

constexpr qint64 beginningSize = 4096;
constexpr qint64 largestFile = 16 * 1024 * 1024;
constexpr int mostPackages = 1000;
constexpr int certain = 80;
constexpr char anything[] = "application/octet-stream";
constexpr char text[] = "text/plain";

/// The type of what is no regular file; empty for those.
QString kindOf(mode_t mode)
{
    switch (mode & S_IFMT) {
    case S_IFDIR:
        return QStringLiteral("inode/directory");
    case S_IFLNK:
        return QStringLiteral("inode/symlink");
    case S_IFCHR:
        return QStringLiteral("inode/chardevice");
    case S_IFBLK:
        return QStringLiteral("inode/blockdevice");
    case S_IFIFO:
        return QStringLiteral("inode/fifo");
    case S_IFSOCK:
        return QStringLiteral("inode/socket");
    default:
        return {};
    }
}

bool looksLikeText(const QByteArray &content)
{
    return std::none_of(content.begin(), content.end(), [](char each) {
        const auto byte = static_cast<unsigned char>(each);
        const bool isSpace = (byte >= '\t' && byte <= '\r' && byte != '\v') || byte == '\b';
        return byte == 0x7f || (byte < ' ' && !isSpace);
    });
}

/// The strongest type of all directories; that of the first one among equals.
MagicType typeOfContent(const QByteArray &beginning, const OpenPlaces &places,
                        const MimeTypes &types)
{
    MagicType best;
    for (const QString &folder : types.folders()) {
        const FileContent file =
            readFile(places.machine.located(folder + QStringLiteral("/magic")), largestFile);
        const QVector<MagicType> rules = parseMagic(file.content.value_or(QByteArray()));
        const MagicType *found = matchingType(rules, beginning);
        if (found != nullptr && found->priority > best.priority)
            best = *found;
    }
    return best;
}

void lookInside(const QString &path, const OpenPlaces &places, const MimeTypes &types,
                FoundType &found)
{
    const FileContent file = readPart(places.machine.located(path), 0, beginningSize);
    found.problem = file.problem;
    MagicType content;
    if (file.content)
        content = typeOfContent(*file.content, places, types);
    found.priority = content.priority;
    const QString plain = looksLikeText(file.content.value_or(QByteArray(1, '\0')))
                              ? QLatin1String(text)
                              : QLatin1String(anything);
    // A file that starts programs must have the suffix for it.
    if (content.type == QLatin1String("application/x-desktop"))
        content.type = plain;
    const QString inside = content.type.isEmpty() ? plain : content.type;
    found.how = content.type.isEmpty() ? FoundType::How::Guessed : FoundType::How::Content;
    if (found.names.isEmpty() || content.priority >= certain) {
        found.type = inside;
        return;
    }
    const auto related =
        std::find_if(found.names.begin(), found.names.end(), [&](const NameMatch &match) {
            return inside != QLatin1String(anything) && types.isSubclass(match.type, inside);
        });
    found.type = related == found.names.end() ? found.names.constFirst().type : related->type;
    found.how = related == found.names.end() ? FoundType::How::Name : FoundType::How::Content;
}

/// Where one package declares the type: the pattern, or else the type itself.
Place placeIn(const QString &path, const QByteArray &content, const QString &type,
              const QString &pattern)
{
    Place place;
    bool isInside = false;
    QXmlStreamReader xml(content);
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == QLatin1String("mime-type")) {
            isInside = xml.attributes().value(QLatin1String("type")) == type;
            if (isInside)
                place = {path, static_cast<int>(xml.lineNumber()), 0};
        } else if (isInside && xml.isStartElement() && xml.name() == QLatin1String("glob") &&
                   xml.attributes()
                           .value(QLatin1String("pattern"))
                           .compare(pattern, Qt::CaseInsensitive) == 0) {
            return {path, static_cast<int>(xml.lineNumber()), 0};
        }
    }
    return place;
}

} // namespace

FoundType typeOfFile(const QString &path, const OpenPlaces &places, const MimeTypes &types)
{
    FoundType found;
    struct stat state = {};
    const QByteArray located = QFile::encodeName(places.machine.located(path));
    const bool isThere =
        ::stat(located.constData(), &state) == 0 || ::lstat(located.constData(), &state) == 0;
    found.type = isThere ? kindOf(state.st_mode) : QString();
    if (!found.type.isEmpty()) {
        found.how = FoundType::How::Kind;
    } else {
        found.names = types.ofName(path.section(QLatin1Char('/'), -1));
        if (isThere && state.st_size == 0) {
            found.type = QLatin1String(text);
            found.how = FoundType::How::Empty;
        } else if (found.names.size() == 1 || !isThere) {
            found.type = found.names.isEmpty() ? QString() : found.names.constFirst().type;
            found.how = FoundType::How::Name;
        } else {
            lookInside(path, places, types, found);
        }
    }
    return found;
}

Place packageOf(const FoundType &type, const OpenPlaces &places, const MimeTypes &types)
{
    const auto match =
        std::find_if(type.names.begin(), type.names.end(),
                     [&type](const NameMatch &each) { return each.type == type.type; });
    const QString pattern = match == type.names.end() ? QString() : match->pattern;
    const QString name = types.unaliased(type.type);
    Place place;
    const QByteArray wanted = '"' + name.toUtf8() + '"';
    for (const QString &mime : name.isEmpty() ? QStringList() : types.folders()) {
        const QString folder = mime + QStringLiteral("/packages");
        for (const QString &file :
             namesIn(places.machine.located(folder), mostPackages).value_or(QStringList())) {
            const QString path = folder + QLatin1Char('/') + file;
            const QByteArray content = file.endsWith(QLatin1String(".xml"))
                                           ? readFile(places.machine.located(path), largestFile)
                                                 .content.value_or(QByteArray())
                                           : QByteArray();
            const Place found =
                content.contains(wanted) ? placeIn(path, content, name, pattern) : Place();
            if (place.path.isEmpty())
                place = found;
        }
        if (!place.path.isEmpty())
            break;
    }
    return place;
}

} // namespace doctor
