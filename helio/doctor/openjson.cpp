#include "helio/doctor/openjson.h"

#include <QJsonArray>

#include "helio/doctor/doctorwords.h"
#include "texts/texts.h"

namespace helio {

namespace {

using doctor::AssociationList;
using doctor::Fate;
using doctor::FoundType;
using doctor::ListGroup;
using doctor::OpenChoice;
using doctor::Opening;
using doctor::OpenQuestion;
using doctor::Place;
using doctor::Statement;

QString nameOf(Opening::Verdict verdict)
{
    switch (verdict) {
    case Opening::Verdict::Opens:
        return QStringLiteral("opens");
    case Opening::Verdict::NotAsSaid:
        return QStringLiteral("not-as-said");
    case Opening::Verdict::Nothing:
        return QStringLiteral("nothing");
    case Opening::Verdict::Undecided:
        break;
    }
    return QStringLiteral("undecided");
}

QString nameOf(FoundType::How how)
{
    switch (how) {
    case FoundType::How::Asked:
        return QStringLiteral("asked");
    case FoundType::How::Kind:
        return QStringLiteral("kind");
    case FoundType::How::Empty:
        return QStringLiteral("empty");
    case FoundType::How::Name:
        return QStringLiteral("name");
    case FoundType::How::Content:
        return QStringLiteral("content");
    case FoundType::How::Guessed:
        break;
    }
    return QStringLiteral("guessed");
}

QString nameOf(ListGroup group)
{
    switch (group) {
    case ListGroup::Default:
        return QStringLiteral("default");
    case ListGroup::Added:
        return QStringLiteral("added");
    case ListGroup::Removed:
        return QStringLiteral("removed");
    case ListGroup::Cache:
        break;
    }
    return QStringLiteral("entry");
}

QString nameOf(Fate fate)
{
    switch (fate) {
    case Fate::Decides:
        return QStringLiteral("decides");
    case Fate::Later:
        return QStringLiteral("later");
    case Fate::Repeated:
        return QStringLiteral("repeated");
    case Fate::Removed:
        return QStringLiteral("removed");
    case Fate::Removes:
        return QStringLiteral("removes");
    case Fate::RemovesLate:
        return QStringLiteral("removes-late");
    case Fate::Masked:
        return QStringLiteral("masked");
    case Fate::NotObeyed:
        return QStringLiteral("not-obeyed");
    case Fate::Fails:
        break;
    }
    return QStringLiteral("fails");
}

QJsonObject placeObject(const Place &place)
{
    QJsonObject object{{QStringLiteral("path"), place.path}};
    if (place.line > 0)
        object.insert(QStringLiteral("line"), place.line);
    return object;
}

QJsonValue choiceValue(const OpenChoice &choice)
{
    if (choice.entry.isEmpty())
        return QJsonValue();
    QJsonObject object{{QStringLiteral("entry"), choice.entry},
                       {QStringLiteral("mime"), choice.type},
                       {QStringLiteral("where"), placeObject(choice.where)}};
    if (!choice.path.isEmpty())
        object.insert(QStringLiteral("path"), choice.path);
    return object;
}

QJsonObject foundObject(const Opening &opening)
{
    const FoundType &found = opening.found;
    QJsonArray names;
    for (const doctor::NameMatch &match : found.names)
        names.append(QJsonObject{{QStringLiteral("mime"), match.type},
                                 {QStringLiteral("pattern"), match.pattern},
                                 {QStringLiteral("weight"), match.weight},
                                 {QStringLiteral("where"), placeObject(match.where)}});
    QJsonObject object{{QStringLiteral("how"), nameOf(found.how)},
                       {QStringLiteral("names"), names}};
    if (found.priority > 0)
        object.insert(QStringLiteral("strength"), found.priority);
    if (!opening.package.path.isEmpty())
        object.insert(QStringLiteral("package"), placeObject(opening.package));
    return object;
}

QJsonArray listArray(const OpenQuestion &question)
{
    QJsonArray lists;
    for (const AssociationList &list : question.lists().all()) {
        QJsonObject object{{QStringLiteral("path"), list.path},
                           {QStringLiteral("present"), list.isThere}};
        if (!list.problem.isEmpty())
            object.insert(QStringLiteral("problem"), list.problem);
        if (list.brokenLine > 0)
            object.insert(QStringLiteral("brokenLine"), list.brokenLine);
        lists.append(object);
    }
    return lists;
}

QJsonObject statementObject(const Statement &statement, const OpenQuestion &question)
{
    QJsonObject object{{QStringLiteral("mime"), statement.type},
                       {QStringLiteral("group"), nameOf(statement.group)},
                       {QStringLiteral("where"), placeObject(statement.where)},
                       {QStringLiteral("entry"), statement.entry},
                       {QStringLiteral("fate"), nameOf(statement.fate)},
                       {QStringLiteral("text"), fateText(statement, question)}};
    if (statement.fate == Fate::Fails)
        object.insert(QStringLiteral("problem"),
                      doctor::entryProblem(question.entries().entry(statement.entry)));
    return object;
}

/// An entry with its place; empty and 0 where there is none.
QJsonObject placedEntry(const QString &entry, const Place &place)
{
    return {{QStringLiteral("entry"), entry},
            {QStringLiteral("path"), place.path},
            {QStringLiteral("line"), place.line}};
}

/// What the lists name beside the entry that decides.
QJsonArray otherEntries(const Opening &opening)
{
    QJsonArray others;
    for (const Statement &statement : opening.gio.statements) {
        if (statement.fate == Fate::Decides)
            continue;
        QJsonObject other = placedEntry(statement.entry, statement.where);
        other.insert(QStringLiteral("reason"), nameOf(statement.fate));
        others.append(other);
    }
    return others;
}

/// For sh.
QString remedyOf(const QString &subject, const Opening &opening)
{
    doctor::Change change;
    change.command = QStringList{QStringLiteral("assistantctl"), QStringLiteral("why"),
                                 QStringLiteral("open"),         QStringLiteral("--fix"),
                                 QStringLiteral("--with"),       opening.proposal,
                                 QStringLiteral("--"),           subject};
    return opening.proposal.isEmpty() ? QString() : commandLineOf(change);
}

} // namespace

QString fateText(const Statement &statement, const OpenQuestion &question)
{
    switch (statement.fate) {
    case Fate::Decides:
        return texts::tr("decides");
    case Fate::Later:
        return texts::tr("comes after the one that decides");
    case Fate::Repeated:
        return texts::tr("was named before");
    case Fate::Removed:
        return texts::tr("is removed by a list before");
    case Fate::Removes:
        return texts::tr("is taken out here");
    case Fate::RemovesLate:
        return texts::tr("is taken out too late: it was named before");
    case Fate::Masked:
        return texts::tr("an entry of this name in a directory before counts instead");
    case Fate::NotObeyed:
        return texts::tr("is not obeyed: such a file may not say that");
    case Fate::Fails:
        break;
    }
    return doctor::entryProblem(question.entries().entry(statement.entry));
}

QJsonObject openObject(const QString &subject, const OpenQuestion &question, const Opening &opening)
{
    QJsonArray statements;
    for (const Statement &statement : opening.gio.statements)
        statements.append(statementObject(statement, question));
    return QJsonObject{
        {QStringLiteral("type"), QStringLiteral("why")},
        {QStringLiteral("question"), QStringLiteral("open")},
        {QStringLiteral("subject"), subject},
        {QStringLiteral("mime"), opening.found.type},
        {QStringLiteral("found"), foundObject(opening)},
        {QStringLiteral("mimes"), QJsonArray::fromStringList(opening.types)},
        {QStringLiteral("verdict"), nameOf(opening.verdict)},
        {QStringLiteral("text"), opening.text},
        {QStringLiteral("winner"), placedEntry(opening.gio.choice.entry, opening.gio.choice.where)},
        {QStringLiteral("others"), otherEntries(opening)},
        {QStringLiteral("tools"), QJsonObject{{QStringLiteral("gio"), opening.gio.choice.entry},
                                              {QStringLiteral("xdg-mime"), opening.xdgMime.entry}}},
        {QStringLiteral("lists"), listArray(question)},
        {QStringLiteral("statements"), statements},
        {QStringLiteral("gio"), choiceValue(opening.gio.choice)},
        {QStringLiteral("xdgMime"), choiceValue(opening.xdgMime)},
        {QStringLiteral("kde"), choiceValue(opening.kde)},
        {QStringLiteral("xdgOpen"),
         opening.xdgOpen.isEmpty() ? QStringLiteral("xdg-mime") : opening.xdgOpen},
        {QStringLiteral("proposal"), opening.proposal},
        {QStringLiteral("remedy"), remedyOf(subject, opening)}};
}

QJsonObject suffixObject(const doctor::SuffixOpening &row)
{
    return {{QStringLiteral("type"), QStringLiteral("suffix")},
            {QStringLiteral("suffix"), row.suffix},
            {QStringLiteral("mime"), row.type},
            {QStringLiteral("gio"), choiceValue(row.gio)},
            {QStringLiteral("xdgMime"), choiceValue(row.xdgMime)}};
}

} // namespace helio
