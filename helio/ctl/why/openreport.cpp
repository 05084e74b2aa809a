#include "helio/ctl/why/openreport.h"

#include <QJsonArray>

#include "helio/doctor/doctorwords.h"
#include "texts/texts.h"

namespace ctl {

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
using helio::visible;

constexpr int suffixWidth = 6;
constexpr int entryWidth = 32;

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

QString textOf(const Statement &statement, const OpenQuestion &question)
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

QString placeText(const Place &place)
{
    return place.line > 0 ? QStringLiteral("%1:%2").arg(place.path).arg(place.line) : place.path;
}

QString typeText(const Opening &opening)
{
    const FoundType &found = opening.found;
    QStringList reasons;
    for (const doctor::NameMatch &match : found.names)
        reasons.append(texts::tr("the name fits %1 (%2, weight %3, %4)")
                           .arg(match.pattern, match.type)
                           .arg(match.weight)
                           .arg(placeText(match.where)));
    if (found.priority > 0)
        reasons.append(texts::tr("the content fits a rule of strength %1").arg(found.priority));
    if (found.how == FoundType::How::Empty)
        reasons.append(texts::tr("the file is empty, and such files count as text"));
    if (found.how == FoundType::How::Guessed)
        reasons.append(texts::tr("neither name nor content fits a type"));
    if (!opening.package.path.isEmpty())
        reasons.append(texts::tr("declared in %1").arg(placeText(opening.package)));
    if (!found.problem.isEmpty())
        reasons.append(found.problem);
    return texts::tr("Type: %1").arg(found.type) +
           (reasons.isEmpty() ? QString() : QStringLiteral(" – ")) +
           reasons.join(QStringLiteral("; "));
}

QString verdictText(const QString &subject, const Opening &opening)
{
    const OpenChoice &choice = opening.gio.choice;
    if (choice.entry.isEmpty())
        return texts::tr("%1: nothing opens it.").arg(subject);
    return texts::tr("%1 opens with %2 (%3).").arg(subject, choice.entry, choice.path);
}

QString toolText(const char *tool, const OpenChoice &choice)
{
    if (choice.entry.isEmpty())
        return texts::tr("  %1: nothing").arg(QLatin1String(tool));
    return texts::tr("  %1: %2, by %3")
        .arg(QLatin1String(tool), choice.entry, placeText(choice.where));
}

void addLists(const OpenQuestion &question, QStringList &lines)
{
    for (const AssociationList &list : question.lists().all()) {
        if (!list.problem.isEmpty())
            lines.append(QStringLiteral("  %1: %2").arg(list.path, list.problem));
        else if (list.brokenLine > 0)
            lines.append(texts::tr("  %1: not obeyed, line %2 is no entry, group or comment")
                             .arg(list.path)
                             .arg(list.brokenLine));
    }
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

} // namespace

QString openText(const QString &subject, const OpenQuestion &question, const Opening &opening)
{
    QStringList lines{verdictText(subject, opening)};
    if (!opening.text.isEmpty())
        lines.append(opening.text);
    if (!opening.types.isEmpty())
        lines.append(typeText(opening));
    if (opening.types.size() > 1)
        lines.append(texts::tr("More general: %1")
                         .arg(QStringList(opening.types.mid(1)).join(QStringLiteral(", "))));
    for (const Statement &statement : opening.gio.statements)
        lines.append(QStringLiteral("  %1  %2  %3  %4: %5")
                         .arg(placeText(statement.where), nameOf(statement.group), statement.type,
                              statement.entry, textOf(statement, question)));
    addLists(question, lines);
    if (!opening.types.isEmpty()) {
        lines.append(opening.isOneForAll() ? texts::tr("The tools agree:")
                                           : texts::tr("The tools differ:"));
        lines.append(toolText("gio", opening.gio.choice));
        lines.append(toolText("xdg-mime", opening.xdgMime));
        lines.append(toolText("KDE", opening.kde));
    }
    if (!opening.proposal.isEmpty())
        lines.append(texts::tr("--fix has %1 open it.").arg(opening.proposal));
    for (QString &line : lines)
        line = visible(line);
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

QJsonObject openObject(const QString &subject, const OpenQuestion &question, const Opening &opening)
{
    QJsonArray statements;
    for (const Statement &statement : opening.gio.statements)
        statements.append(QJsonObject{{QStringLiteral("mime"), statement.type},
                                      {QStringLiteral("group"), nameOf(statement.group)},
                                      {QStringLiteral("where"), placeObject(statement.where)},
                                      {QStringLiteral("entry"), statement.entry},
                                      {QStringLiteral("fate"), nameOf(statement.fate)}});
    QJsonObject line{{QStringLiteral("type"), QStringLiteral("opening")},
                     {QStringLiteral("subject"), subject},
                     {QStringLiteral("mime"), opening.found.type},
                     {QStringLiteral("found"), foundObject(opening)},
                     {QStringLiteral("mimes"), QJsonArray::fromStringList(opening.types)},
                     {QStringLiteral("verdict"), nameOf(opening.verdict)},
                     {QStringLiteral("text"), opening.text},
                     {QStringLiteral("lists"), listArray(question)},
                     {QStringLiteral("statements"), statements},
                     {QStringLiteral("gio"), choiceValue(opening.gio.choice)},
                     {QStringLiteral("xdgMime"), choiceValue(opening.xdgMime)},
                     {QStringLiteral("kde"), choiceValue(opening.kde)}};
    if (!opening.proposal.isEmpty())
        line.insert(QStringLiteral("proposal"), opening.proposal);
    return line;
}

QString suffixText(const doctor::SuffixOpening &row)
{
    const QString entry = row.gio.entry.isEmpty() ? texts::tr("nothing") : row.gio.entry;
    QString text = row.suffix.leftJustified(suffixWidth) + entry.leftJustified(entryWidth) +
                   QLatin1Char(' ') + placeText(row.gio.where);
    if (row.xdgMime.entry != row.gio.entry)
        text += texts::tr(" (xdg-mime: %1)")
                    .arg(row.xdgMime.entry.isEmpty() ? texts::tr("nothing") : row.xdgMime.entry);
    return visible(text) + QLatin1Char('\n');
}

QJsonObject suffixObject(const doctor::SuffixOpening &row)
{
    return {{QStringLiteral("type"), QStringLiteral("suffix")},
            {QStringLiteral("suffix"), row.suffix},
            {QStringLiteral("mime"), row.type},
            {QStringLiteral("gio"), choiceValue(row.gio)},
            {QStringLiteral("xdgMime"), choiceValue(row.xdgMime)}};
}

} // namespace ctl
