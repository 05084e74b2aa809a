#include "doctor/why/open/lists.h"

#include <QFile>

#include <algorithm>
#include <array>

#include <sys/stat.h>

#include "doctor/machine/filereading.h"
#include "doctor/why/open/keyfile.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr qint64 largestList = 4 * 1024 * 1024;
constexpr char plainName[] = "/mimeapps.list";

struct GroupName
{
    const char *name;
    ListGroup group;
};
constexpr std::array<GroupName, 4> groupNames{{{"Default Applications", ListGroup::Default},
                                               {"Added Associations", ListGroup::Added},
                                               {"Removed Associations", ListGroup::Removed},
                                               {"MIME Cache", ListGroup::Cache}}};

/// GLib obeys keys in the order in which they first stand, each with its last value.
void add(const ListLine &line, QVector<ListLine> &lines)
{
    const auto same = std::find_if(lines.begin(), lines.end(), [&line](const ListLine &each) {
        return each.group == line.group && each.key == line.key;
    });
    if (same == lines.end())
        lines.append(line);
    else
        *same = line;
}

void index(AssociationList &list, const MimeTypes &types)
{
    const KeyFile file = parseKeyFile(list.content);
    list.brokenLine = file.brokenLine;
    for (const KeyFileLine &line : file.lines) {
        for (const GroupName &name : groupNames) {
            const QString key = QString::fromUtf8(line.key);
            if (line.group == name.name)
                add({name.group, key, listValue(line.value), line.line},
                    list.lines[types.unaliased(key)]);
        }
    }
}

void read(AssociationList &list, const Machine &machine, const MimeTypes &types)
{
    const QString path = machine.located(list.path);
    struct stat state = {};
    if (::stat(QFile::encodeName(path).constData(), &state) != 0)
        return;
    list.isThere = true;
    const FileContent file = readFile(path, largestList);
    list.problem = file.problem;
    if (file.content) {
        list.content = *file.content;
        index(list, types);
    } else {
        // A directory and what may not be read are passed over by all tools alike.
        const bool isLarge = S_ISREG(state.st_mode) && state.st_size > largestList;
        list.isUndecided = isLarge || (!S_ISREG(state.st_mode) && !S_ISDIR(state.st_mode));
    }
}

} // namespace

bool AssociationList::takes(ListGroup group) const
{
    switch (group) {
    case ListGroup::Default:
        return true;
    case ListGroup::Added:
        return kind == Kind::Plain;
    case ListGroup::Removed:
        return kind == Kind::Plain || kind == Kind::Cache;
    case ListGroup::Cache:
        break;
    }
    return kind == Kind::Cache;
}

void AssociationLists::addFolder(const OpenPlaces &places, const MimeTypes &types,
                                 const QString &folder, int dataFolder)
{
    using Kind = AssociationList::Kind;
    const int first = m_lists.size();
    const auto add = [&](const QString &path, Kind kind) {
        AssociationList list;
        list.path = path;
        list.kind = kind;
        list.dataFolder = dataFolder;
        read(list, places.machine, types);
        m_lists.append(list);
    };
    for (const QString &desktop : places.desktops)
        add(folder + QLatin1Char('/') + desktop.toLower() + QStringLiteral("-mimeapps.list"),
            Kind::ForDesktop);
    add(folder + QLatin1String(plainName), Kind::Plain);
    if (dataFolder >= 0) {
        add(folder + QStringLiteral("/defaults.list"), Kind::Defaults);
        add(folder + QStringLiteral("/mimeinfo.cache"), Kind::Cache);
    }
    m_folders.append({first, int(m_lists.size()) - first, dataFolder});
}

AssociationLists::AssociationLists(const OpenPlaces &places, const MimeTypes &types)
{
    for (const QString &folder : places.config)
        addFolder(places, types, folder, -1);
    for (int number = 0; number < places.data.size(); ++number)
        addFolder(places, types, places.data.at(number) + QStringLiteral("/applications"), number);
}

} // namespace doctor
