#include "helio/ctl/doctor/textprinter.h"

#include <algorithm>
#include <cstdio>

#include "doctor/journal/journal.h"
#include "helio/doctor/doctorwords.h"
#include "helio/doctor/verifiedrepair.h"
#include "texts/texts.h"

namespace ctl {

namespace {

using helio::visible;

constexpr int idWidth = 30;
constexpr int stateWidth = 10;

void printLine(const QString &line)
{
    std::fputs((line + QLatin1Char('\n')).toLocal8Bit().constData(), stdout);
    std::fflush(stdout);
}

/// Chinese, Japanese and Korean characters take two columns of a terminal.
bool isWide(QChar character)
{
    switch (character.script()) {
    case QChar::Script_Han:
    case QChar::Script_Hangul:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
        return true;
    default:
        return false;
    }
}

/// Followed by spaces up to that many columns.
QString padded(const QString &text, int columns)
{
    const auto wide = std::count_if(text.begin(), text.end(), isWide);
    return text.leftJustified(columns - static_cast<int>(wide));
}

QString stateOf(doctor::JournalEntry::State state)
{
    using State = doctor::JournalEntry::State;
    switch (state) {
    case State::Begun:
        return texts::tr("begun");
    case State::Applied:
        return texts::tr("repaired");
    case State::Undone:
        return texts::tr("undone");
    case State::TakenBack:
        return texts::tr("taken back");
    case State::Damaged:
        break;
    }
    return texts::tr("damaged");
}

QString textOf(helio::RepairOutcome::Result result)
{
    using Result = helio::RepairOutcome::Result;
    switch (result) {
    case Result::Repaired:
        return texts::tr("repaired");
    case Result::Unchanged:
        return texts::tr("unchanged");
    case Result::Refused:
        return texts::tr("not repaired");
    case Result::Planned:
        return texts::tr("planned");
    case Result::Failed:
        break;
    }
    return texts::tr("failed");
}

/// What is done to the path, in front of it.
QString verbOf(const doctor::Change &change)
{
    using Kind = doctor::Change::Kind;
    switch (change.kind) {
    case Kind::Write:
        return texts::tr("change");
    case Kind::Create:
        return texts::tr("create");
    case Kind::Remove:
        return texts::tr("remove");
    case Kind::Move:
        return texts::tr("move");
    case Kind::Rights:
        return texts::tr("set rights");
    case Kind::End:
        return texts::tr("end process");
    case Kind::Command:
        break;
    }
    return texts::tr("for the administrator");
}

QString objectOf(const doctor::Change &change)
{
    using Kind = doctor::Change::Kind;
    if (change.kind == Kind::Command)
        return helio::commandLineOf(change);
    if (change.kind == Kind::End)
        return QString::number(change.process);
    QString text = change.path;
    if (!change.target.isEmpty())
        text += QStringLiteral(" -> ") + change.target;
    if (change.mode)
        text += QStringLiteral(" %1").arg(*change.mode, 4, 8, QLatin1Char('0'));
    return text;
}

} // namespace

QString TextPrinter::coloured(const QString &text, Colour colour) const
{
    return m_colours && colour != Plain
               ? QStringLiteral("\x1b[%1m%2\x1b[0m").arg(static_cast<int>(colour)).arg(text)
               : text;
}

void TextPrinter::printFinding(const doctor::Finding &finding) const
{
    const Colour colour = finding.state == doctor::State::Bad       ? Red
                          : finding.state == doctor::State::Warning ? Yellow
                                                                    : Plain;
    const QString mark = finding.state == doctor::State::Bad       ? QStringLiteral("✘")
                         : finding.state == doctor::State::Warning ? QStringLiteral("!")
                                                                   : QStringLiteral("i");
    printLine(coloured(mark, colour) + QLatin1Char(' ') +
              visible(finding.check).leftJustified(idWidth) + QLatin1Char(' ') +
              visible(finding.text));
    for (const doctor::Place &place : finding.where) {
        QString where = place.path;
        if (place.line > 0)
            where += QStringLiteral(":%1").arg(place.line);
        if (place.process > 0)
            where += texts::tr(" (process %1)").arg(place.process);
        printLine(QStringLiteral("    ") + visible(where));
    }
    if (!finding.repairs.isEmpty())
        printLine(QStringLiteral("    ") +
                  texts::tr("To repair: %1")
                      .arg(QStringLiteral("assistantctl doctor --fix ") + visible(finding.check)));
}

void TextPrinter::printCheck(const doctor::CheckDefinition &check,
                             const doctor::CheckResult &result)
{
    using Outcome = doctor::CheckResult::Outcome;
    const QString name = visible(check.id).leftJustified(idWidth) + QLatin1Char(' ');
    switch (result.outcome) {
    case Outcome::Ok:
        printLine(coloured(QStringLiteral("✔"), Green) + QLatin1Char(' ') + name +
                  visible(check.title.inLanguage(m_locale)));
        break;
    case Outcome::Found:
        for (const doctor::Finding &finding : result.findings)
            printFinding(finding);
        break;
    case Outcome::Failed:
        printLine(coloured(QStringLiteral("?"), Yellow) + QLatin1Char(' ') + name +
                  texts::tr("could not be checked: %1").arg(visible(result.reason)));
        break;
    case Outcome::Skipped:
        printLine(QStringLiteral("- ") + name + visible(result.reason));
        break;
    }
}

void TextPrinter::printListed(const doctor::CheckDefinition &check)
{
    printLine(visible(check.id).leftJustified(idWidth) + QLatin1Char(' ') +
              visible(check.title.inLanguage(m_locale)));
}

void TextPrinter::printSuite(const suites::Installation &installation, bool isChosen)
{
    const QString mark = isChosen ? QStringLiteral("* ") : QStringLiteral("  ");
    printLine(mark + texts::tr("%1 %2 (%3) in %4, settings in %5")
                         .arg(installation.name, visible(installation.version), installation.source,
                              visible(installation.folder), visible(installation.profile)));
}

void TextPrinter::printProblem(const doctor::FileProblem &problem)
{
    std::fputs(QStringLiteral("%1:%2:%3: %4\n")
                   .arg(visible(problem.file))
                   .arg(problem.mistake.line)
                   .arg(problem.mistake.column)
                   .arg(visible(problem.mistake.message))
                   .toLocal8Bit()
                   .constData(),
               stderr);
}

void TextPrinter::printDiff(const QString &diff) const
{
    const QStringList lines = diff.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const Colour colour = line.startsWith(QLatin1Char('+'))   ? Green
                              : line.startsWith(QLatin1Char('-')) ? Red
                                                                  : Plain;
        printLine(QStringLiteral("    ") + coloured(visible(line), colour));
    }
}

void TextPrinter::printChange(const QString &, const doctor::Change &change)
{
    printLine(QStringLiteral("  ") +
              texts::tr("%1: %2").arg(verbOf(change), visible(objectOf(change))));
    printDiff(helio::diffOf(change));
}

void TextPrinter::printRepair(const helio::RepairOutcome &outcome)
{
    using Result = helio::RepairOutcome::Result;
    const bool isGood = outcome.result == Result::Repaired || outcome.result == Result::Planned;
    const QString result =
        outcome.reason.isEmpty()
            ? textOf(outcome.result)
            : texts::tr("%1 (%2)").arg(textOf(outcome.result), visible(outcome.reason));
    const QString line =
        texts::tr("%1: %2").arg(visible(outcome.check + QLatin1Char('/') + outcome.repair), result);
    printLine(coloured(line, isGood ? Green : Red));
    if (outcome.result == Result::Repaired)
        printLine(QStringLiteral("    ") +
                  texts::tr("To undo: %1")
                      .arg(QStringLiteral("assistantctl doctor undo %1").arg(outcome.journal)));
}

void TextPrinter::printEntry(const doctor::JournalEntry &entry)
{
    printLine(QStringLiteral("%1  %2  %3 %4")
                  .arg(entry.number, 4)
                  .arg(entry.time.toLocalTime()
                           .toString(Qt::ISODate)
                           .replace(QLatin1Char('T'), QLatin1Char(' ')),
                       padded(stateOf(entry.state), stateWidth),
                       visible(entry.check + QLatin1Char('/') + entry.repair)));
    for (const QString &path : entry.paths)
        printLine(QStringLiteral("      ") + visible(path));
}

void TextPrinter::printUndone(int journal, const doctor::JournalResult &result)
{
    using Outcome = doctor::JournalResult::Outcome;
    if (result.outcome == Outcome::Undone)
        printLine(coloured(texts::tr("Repair %1 was undone.").arg(journal), Green));
    else
        printLine(coloured(visible(result.reason), Red));
    for (const QString &path : result.kept)
        printLine(QStringLiteral("    ") +
                  texts::tr("Changed after the repair, and kept: %1").arg(visible(path)));
}

void TextPrinter::printNote(const QString &note)
{
    printLine(visible(note));
}

void TextPrinter::printSummary(int checks, int findings, int failed)
{
    printLine(texts::tr("Checks: %1, findings: %2, not checked: %3")
                  .arg(checks)
                  .arg(findings)
                  .arg(failed));
}

bool TextPrinter::asks(const QString &question)
{
    std::fputs((question + QStringLiteral(" [y/N] ")).toLocal8Bit().constData(), stdout);
    std::fflush(stdout);
    char answer[16] = {};
    return std::fgets(answer, sizeof answer, stdin) && (answer[0] == 'y' || answer[0] == 'Y');
}

} // namespace ctl
