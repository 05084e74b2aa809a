#include "doctor/why/open/open.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

#include "doctor/editors/keyeditor.h"
#include "doctor/repairs/draft.h"
#include "doctor/why/open/xdgopen.h"
#include "suites/installation.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr char defaultsGroup[] = "Default Applications";
constexpr char listName[] = "/mimeapps.list";
constexpr char checkName[] = "why.open";
constexpr char repairName[] = "open-with";
constexpr char openDocument[] = "application/vnd.oasis.opendocument.";
constexpr std::chrono::seconds longestSearch{2};

struct Component
{
    const char *entry;
    const char *suffixes;
};
constexpr Component components[] = {
    {"vyr-office-vyr.desktop", "docx docm doc dot dotm dotx vyr vyrx vyrs vyro vyt vytx rtf"},
    {"vyr-office-tbl.desktop", "xlsx xls xlsm xlt xltm xltx tbl tblx tbt tbtx tbls tblo"},
    {"vyr-office-shw.desktop", "pptx ppt pptm pps pot potm potx ppsx shd shdx sht shtx shds shdo"}};

QStringList suffixesOf(const Component &component)
{
    return QString::fromLatin1(component.suffixes).split(QLatin1Char(' '));
}

/// Null for a type that is none of the suite's documents.
const Component *componentFor(const QString &type, const MimeTypes &types)
{
    for (const Component &component : components) {
        for (const QString &suffix : suffixesOf(component)) {
            const QVector<NameMatch> names = types.ofName(QStringLiteral("a.") + suffix);
            if (!names.isEmpty() && types.unaliased(names.constFirst().type) == type)
                return &component;
        }
    }
    return nullptr;
}

/// The first default that a list names for the type itself, whatever becomes of it.
const Statement *firstDefault(const Opening &opening)
{
    const auto found = std::find_if(
        opening.gio.statements.begin(), opening.gio.statements.end(), [&](const Statement &each) {
            return each.group == ListGroup::Default && each.type == opening.types.constFirst();
        });
    return found == opening.gio.statements.end() ? nullptr : &*found;
}

/// A list that GLib refuses as a whole though it says something of the type.
const AssociationList *refusedList(const AssociationLists &lists, const QString &type)
{
    const QByteArray start = type.toUtf8() + '=';
    const auto found =
        std::find_if(lists.all().begin(), lists.all().end(), [&](const AssociationList &list) {
            return list.brokenLine > 0 &&
                   (list.content.startsWith(start) || list.content.contains('\n' + start));
        });
    return found == lists.all().end() ? nullptr : &*found;
}

QString placeText(const Place &place)
{
    return texts::tr("%1, line %2").arg(place.path, QString::number(place.line));
}

bool isType(const QString &subject)
{
    static const QRegularExpression type(
        QStringLiteral("\\A[A-Za-z0-9][A-Za-z0-9!#$&^_.+-]*/[A-Za-z0-9][A-Za-z0-9!#$&^_.+-]*\\z"));
    static const QRegularExpression known(QStringLiteral(
        "\\A(application|audio|chemical|font|image|inode|message|model|multipart|text|video|"
        "x-[a-z-]+)/"));
    if (!type.match(subject).hasMatch() || QFileInfo::exists(subject))
        return false;
    return known.match(subject).hasMatch() || !QFileInfo::exists(QFileInfo(subject).path());
}

} // namespace

OpenQuestion::OpenQuestion(const Machine &machine)
    : m_places(openPlaces(machine)),
      m_types(m_places),
      m_lists(m_places, m_types),
      m_entries(m_places),
      m_xdgMime(m_places, m_lists)
{
}

QStringList OpenQuestion::suffixes()
{
    QStringList all;
    for (const Component &component : components)
        all += suffixesOf(component);
    return all;
}

QString OpenQuestion::entryOf(const QString &suffix)
{
    const auto *const found =
        std::find_if(std::begin(components), std::end(components),
                     [&](const Component &each) { return suffixesOf(each).contains(suffix); });
    return found == std::end(components) ? QString() : QLatin1String(found->entry);
}

QString OpenQuestion::suiteEntry(const QString &type) const
{
    const Component *component = componentFor(type, m_types);
    const QString entry = component == nullptr ? QString() : QLatin1String(component->entry);
    return m_entries.entry(entry).state == EntryState::Works ? entry : QString();
}

QString OpenQuestion::installedEntry(const Opening &opening) const
{
    const QString type = opening.types.constFirst();
    const QVector<Statement> &all = opening.gio.statements;
    const auto opens = [&](const QString &name) {
        const DesktopEntry &entry = m_entries.entry(name);
        const bool isUsed =
            entry.state == EntryState::Works && !entry.isHidden && !entry.hasNoDisplay;
        const auto names = [&](const QString &each) { return m_types.unaliased(each) == type; };
        const auto takesOut = [&](const Statement &each) {
            return each.group == ListGroup::Removed && each.entry == name;
        };
        return isUsed && std::any_of(entry.types.begin(), entry.types.end(), names) &&
               std::none_of(all.begin(), all.end(), takesOut);
    };
    for (const QString &beginning :
         suites::chosenEntries(m_places.machine, Deadline(longestSearch))) {
        const QStringList names = m_entries.namesWith(beginning);
        const auto found = std::find_if(names.begin(), names.end(), opens);
        if (found != names.end())
            return *found;
    }
    return {};
}

QString OpenQuestion::proposal(const Opening &opening) const
{
    const QString type = opening.types.constFirst();
    const QString now = opening.gio.choice.entry;
    const QString own = suiteEntry(type);
    if (!own.isEmpty())
        return own;
    const bool isOffice =
        type.startsWith(QLatin1String(openDocument)) || componentFor(type, m_types) != nullptr;
    const QString installed = isOffice || now.isEmpty() ? installedEntry(opening) : QString();
    return installed.isEmpty() ? now : installed;
}

void OpenQuestion::decide(Opening &opening) const
{
    const QString type = opening.types.constFirst();
    const OpenChoice &choice = opening.gio.choice;
    const Statement *wanted = firstDefault(opening);
    const auto undecided =
        std::find_if(m_lists.all().begin(), m_lists.all().end(),
                     [](const AssociationList &each) { return each.isUndecided; });
    if (undecided != m_lists.all().end()) {
        opening.verdict = Opening::Verdict::Undecided;
        opening.text = texts::tr("%1 cannot be looked at: %2. What it says would count.")
                           .arg(undecided->path, undecided->problem);
    } else if (m_entries.isIncomplete()) {
        opening.verdict = Opening::Verdict::Undecided;
        opening.text = texts::tr("There are more desktop entries than can be looked at.");
    } else if (const AssociationList *refused = refusedList(m_lists, type)) {
        opening.verdict = Opening::Verdict::NotAsSaid;
        opening.text = texts::tr("%1 is not obeyed: line %2 is no entry, group or comment.")
                           .arg(refused->path, QString::number(refused->brokenLine));
    } else if (wanted != nullptr && wanted->fate == Fate::Fails) {
        opening.verdict = Opening::Verdict::NotAsSaid;
        opening.text = texts::tr("%1 names %2, but %3.")
                           .arg(placeText(wanted->where), wanted->entry,
                                entryProblem(m_entries.entry(wanted->entry)));
    } else if (!choice.entry.isEmpty()) {
        opening.verdict = Opening::Verdict::Opens;
        opening.text = texts::tr("%1 decides.").arg(placeText(choice.where));
    }
    if (choice.entry.isEmpty() && opening.verdict != Opening::Verdict::Undecided) {
        opening.verdict = Opening::Verdict::Nothing;
        if (opening.text.isEmpty())
            opening.text = texts::tr("No list names anything that opens it and is installed.");
    }
}

Opening OpenQuestion::answer(const FoundType &found) const
{
    if (found.type.isEmpty()) {
        Opening unknown;
        unknown.found = found;
        unknown.text = texts::tr("The type is not known: no pattern fits the name.");
        return unknown;
    }
    Opening opening = byGio(found.type);
    opening.found = found;
    opening.package = packageOf(found, m_places, m_types);
    opening.xdgMime = m_xdgMime.choice(found.type);
    opening.xdgOpen = xdgOpenProgram(m_places);
    if (!m_kde)
        m_kde = std::make_unique<KdeChoices>(m_places, m_lists, m_entries, m_types);
    opening.kde = m_kde->choice(found.type);
    const bool isRight = opening.verdict == Opening::Verdict::Opens && opening.isOneForAll();
    if (!isRight && opening.verdict != Opening::Verdict::Undecided)
        opening.proposal = proposal(opening);
    return opening;
}

Opening OpenQuestion::of(const QString &subject) const
{
    return isType(subject) ? ofType(subject) : ofFile(subject);
}

Opening OpenQuestion::ofType(const QString &type) const
{
    FoundType found;
    found.type = type;
    return answer(found);
}

Opening OpenQuestion::byGio(const QString &type) const
{
    Opening opening;
    opening.found.type = type;
    opening.verdict = Opening::Verdict::Nothing;
    opening.types = m_types.withParents(type);
    opening.gio = gioChoice(m_lists, m_entries, opening.types);
    decide(opening);
    return opening;
}

Opening OpenQuestion::ofFile(const QString &path) const
{
    return answer(typeOfFile(QFileInfo(path).absoluteFilePath(), m_places, m_types));
}

Opening OpenQuestion::ofSuffix(const QString &suffix) const
{
    FoundType found;
    found.how = FoundType::How::Name;
    found.names = m_types.ofName(QStringLiteral("a.") + suffix);
    if (!found.names.isEmpty())
        found.type = found.names.constFirst().type;
    return answer(found);
}

QVector<SuffixOpening> OpenQuestion::ofSuffixes() const
{
    QVector<SuffixOpening> rows;
    for (const QString &suffix : suffixes()) {
        const QVector<NameMatch> names = m_types.ofName(QStringLiteral("a.") + suffix);
        SuffixOpening row{suffix, names.isEmpty() ? QString() : names.constFirst().type, {}, {}};
        if (!row.type.isEmpty()) {
            row.gio = gioChoice(m_lists, m_entries, m_types.withParents(row.type)).choice;
            row.xdgMime = m_xdgMime.choice(row.type);
        }
        rows.append(row);
    }
    return rows;
}

Plan OpenQuestion::repair(const QString &type, const QString &entry) const
{
    Plan plan{QLatin1String(checkName), QLatin1String(repairName), {}, {}};
    const QString path = m_places.config.value(0) + QLatin1String(listName);
    Draft draft(m_places.machine);
    const std::optional<QByteArray> content = draft.content(path);
    const KeyEditor &editor = keyEditor(Format::DesktopEntry);
    const QString key = m_types.unaliased(type);
    if (!content && draft.exists(path)) {
        plan.refusal = texts::tr("%1 cannot be read").arg(path);
        return plan;
    }
    // What stood there before stays behind the entry, for when it is no longer installed.
    const auto before =
        editor.find(content.value_or(QByteArray()), {QLatin1String(defaultsGroup), key});
    QStringList names =
        before ? before->value.split(QLatin1Char(';'), Qt::SkipEmptyParts) : QStringList();
    names.removeAll(entry);
    names.prepend(entry);
    const EditedContent edited =
        editor.set(content.value_or(QByteArray()), {QLatin1String(defaultsGroup), key},
                   names.join(QLatin1Char(';')) + QLatin1Char(';'));
    plan.refusal = edited.content ? draft.write(path, *edited.content)
                                  : texts::tr("%1 cannot be edited: %2").arg(path, edited.problem);
    plan.changes = draft.changes();
    if (plan.refusal.isEmpty() && plan.changes.isEmpty())
        plan.refusal = texts::tr("%1 says so already").arg(path);
    return plan;
}

} // namespace doctor
