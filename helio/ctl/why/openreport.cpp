#include "helio/ctl/why/openreport.h"

#include <algorithm>

#include "helio/doctor/doctorwords.h"
#include "helio/doctor/openjson.h"
#include "texts/texts.h"

namespace ctl {

namespace {

using doctor::AssociationList;
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

QString textOf(ListGroup group)
{
    switch (group) {
    case ListGroup::Default:
        return texts::tr("default");
    case ListGroup::Added:
        return texts::tr("added");
    case ListGroup::Removed:
        return texts::tr("removed");
    case ListGroup::Cache:
        break;
    }
    return texts::tr("by the entry");
}

/// What matters to some tools only.
QString marksOf(const doctor::DesktopEntry &entry)
{
    QString marks;
    if (entry.isHidden)
        marks += texts::tr(" (hidden)");
    if (entry.hasNoDisplay)
        marks += texts::tr(" (not in menus)");
    if (!entry.isShown)
        marks += texts::tr(" (not for this desktop)");
    return marks;
}

QString placeText(const Place &place)
{
    return place.line > 0 ? place.path + QLatin1Char(':') + QString::number(place.line)
                          : place.path;
}

QString typeText(const Opening &opening)
{
    const FoundType &found = opening.found;
    QStringList reasons;
    for (const doctor::NameMatch &match : found.names)
        reasons.append(texts::tr("the name fits %1 (%2, weight %3, %4)")
                           .arg(match.pattern, match.type, QString::number(match.weight),
                                placeText(match.where)));
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

/// The lists that no line before has named, with what keeps them out.
void addLists(const OpenQuestion &question, const Opening &opening, QStringList &lines)
{
    const auto isNamed = [&opening](const AssociationList &list) {
        return std::any_of(opening.gio.statements.begin(), opening.gio.statements.end(),
                           [&list](const Statement &each) { return each.where.path == list.path; });
    };
    for (const AssociationList &list : question.lists().all()) {
        if (!list.problem.isEmpty())
            lines.append(QStringLiteral("  %1: %2").arg(list.path, list.problem));
        else if (list.brokenLine > 0)
            lines.append(texts::tr("  %1: not obeyed, line %2 is no entry, group or comment")
                             .arg(list.path, QString::number(list.brokenLine)));
        else if (list.isThere && !isNamed(list))
            lines.append(texts::tr("  %1: says nothing of it").arg(list.path));
    }
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
                         .arg(placeText(statement.where), textOf(statement.group), statement.type,
                              statement.entry + marksOf(question.entries().entry(statement.entry)),
                              helio::fateText(statement, question)));
    addLists(question, opening, lines);
    if (!opening.types.isEmpty()) {
        lines.append(opening.isOneForAll() ? texts::tr("The tools agree:")
                                           : texts::tr("The tools differ:"));
        lines.append(toolText("gio", opening.gio.choice));
        lines.append(toolText("xdg-mime", opening.xdgMime));
        lines.append(toolText("KDE", opening.kde));
        lines.append(
            texts::tr("  xdg-open: as %1")
                .arg(opening.xdgOpen.isEmpty() ? QStringLiteral("xdg-mime") : opening.xdgOpen));
    }
    if (!opening.proposal.isEmpty())
        lines.append(texts::tr("--fix has %1 open it.").arg(opening.proposal));
    for (QString &line : lines)
        line = visible(line);
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
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

} // namespace ctl
