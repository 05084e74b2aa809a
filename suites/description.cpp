#include "suites/description.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

static void initialiseResources()
{
    Q_INIT_RESOURCE(suites);
}

namespace suites {

namespace {

QString textIn(const QJsonObject &object, const char *key)
{
    return object.value(QLatin1String(key)).toString();
}

Entry entryIn(const QJsonObject &object, const char *key)
{
    const QJsonObject entry = object.value(QLatin1String(key)).toObject();
    return {textIn(entry, "file"), textIn(entry, "pattern")};
}

QMap<QString, QString> textsIn(const QJsonObject &object)
{
    QMap<QString, QString> texts;
    for (auto entry = object.begin(); entry != object.end(); ++entry)
        texts.insert(entry.key(), entry->toString());
    return texts;
}

QStringList textsIn(const QJsonObject &object, const char *key)
{
    return object.value(QLatin1String(key)).toVariant().toStringList();
}

Description descriptionFrom(const QJsonObject &object)
{
    Description description;
    description.id = textIn(object, "id");
    description.name = textIn(object, "name");
    const QJsonArray places = object.value(QStringLiteral("places")).toArray();
    for (const QJsonValue &value : places) {
        const QJsonObject place = value.toObject();
        description.places.append({textIn(place, "source"), textIn(place, "folder"),
                                   textIn(place, "configuration"), textsIn(place, "command"),
                                   textIn(place, "entries")});
    }
    description.version = entryIn(object, "version");
    description.profile = entryIn(object, "profile");
    description.profilePart = textIn(object.value(QStringLiteral("profile")).toObject(), "part");
    description.program = textIn(object, "program");
    description.counterparts = textsIn(object.value(QStringLiteral("counterparts")).toObject());
    description.components = textsIn(object.value(QStringLiteral("components")).toObject());
    description.plugins = textIn(object, "plugins");
    description.languages = textIn(object, "languages");
    description.process = textIn(object, "process");
    for (const QJsonValue value : object.value(QStringLiteral("toolkits")).toArray())
        description.toolkits.append(
            {textIn(value.toObject(), "desktop"), textsIn(value.toObject(), "plugins")});
    for (const QJsonValue value : object.value(QStringLiteral("parts")).toArray())
        description.parts.append(
            {textIn(value.toObject(), "id"), textsIn(value.toObject(), "names")});
    const QJsonObject packages = object.value(QStringLiteral("packages")).toObject();
    for (auto purpose = packages.begin(); purpose != packages.end(); ++purpose)
        description.packages.insert(purpose.key(), textsIn(purpose->toObject()));
    return description;
}

QVector<Description> readDescriptions()
{
    initialiseResources();
    QVector<Description> all;
    const QDir directory(QStringLiteral(":/suites"));
    for (const QString &name : directory.entryList()) {
        QFile file(directory.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            all.append(descriptionFrom(QJsonDocument::fromJson(file.readAll()).object()));
    }
    return all;
}

} // namespace

const QVector<Description> &descriptions()
{
    static const QVector<Description> all = readDescriptions();
    return all;
}

const Description *descriptionNamed(const QString &id)
{
    const QVector<Description> &all = descriptions();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&id](const Description &known) { return known.id == id; });
    return found == all.end() ? nullptr : &*found;
}

QStringList descriptionIds()
{
    QStringList ids;
    for (const Description &description : descriptions())
        ids.append(description.id);
    return ids;
}

} // namespace suites
