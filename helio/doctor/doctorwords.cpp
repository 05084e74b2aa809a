#include "helio/doctor/doctorwords.h"

#include <QRegularExpression>

#include <algorithm>

#include "doctor/lines/unifieddiff.h"

namespace helio {

namespace {

/// ASCII only: in some encodings a byte of another character is a special one of the shell.
constexpr char plainWord[] = "\\A[A-Za-z0-9_./,:@%+=-]+\\z";

QString shellWord(const QString &word)
{
    if (QRegularExpression(QLatin1String(plainWord)).match(word).hasMatch())
        return word;
    return QLatin1Char('\'') + QString(word).replace(QLatin1Char('\''), QLatin1String("'\\''")) +
           QLatin1Char('\'');
}

} // namespace

QString nameOf(doctor::Change::Kind kind)
{
    using Kind = doctor::Change::Kind;
    switch (kind) {
    case Kind::Write:
        return QStringLiteral("write");
    case Kind::Create:
        return QStringLiteral("create");
    case Kind::Remove:
        return QStringLiteral("remove");
    case Kind::Move:
        return QStringLiteral("move");
    case Kind::Rights:
        return QStringLiteral("rights");
    case Kind::End:
        return QStringLiteral("end");
    case Kind::Command:
        break;
    }
    return QStringLiteral("command");
}

QString nameOf(doctor::CheckResult::Outcome outcome)
{
    using Outcome = doctor::CheckResult::Outcome;
    switch (outcome) {
    case Outcome::Ok:
        return QStringLiteral("ok");
    case Outcome::Found:
        return QStringLiteral("finding");
    case Outcome::Failed:
        return QStringLiteral("failed");
    case Outcome::Skipped:
        break;
    }
    return QStringLiteral("skipped");
}

QString nameOf(doctor::JournalEntry::State state)
{
    using State = doctor::JournalEntry::State;
    switch (state) {
    case State::Begun:
        return QStringLiteral("begun");
    case State::Applied:
        return QStringLiteral("applied");
    case State::Undone:
        return QStringLiteral("undone");
    case State::TakenBack:
        return QStringLiteral("taken-back");
    case State::Damaged:
        break;
    }
    return QStringLiteral("damaged");
}

QString nameOf(RepairOutcome::Result result)
{
    using Result = RepairOutcome::Result;
    switch (result) {
    case Result::Repaired:
        return QStringLiteral("repaired");
    case Result::Unchanged:
        return QStringLiteral("unchanged");
    case Result::Refused:
        return QStringLiteral("refused");
    case Result::Planned:
        return QStringLiteral("planned");
    case Result::Failed:
        break;
    }
    return QStringLiteral("failed");
}

QString diffOf(const doctor::Change &change)
{
    if (change.before || change.after)
        return QString::fromUtf8(doctor::unifiedDiff(change.before, change.after, change.path));
    return {};
}

QString commandLineOf(const doctor::Change &change)
{
    QStringList words;
    std::transform(change.command.begin(), change.command.end(), std::back_inserter(words),
                   shellWord);
    return words.join(QLatin1Char(' '));
}

QString visible(const QString &text)
{
    QString shown;
    for (const QChar character : text)
        shown += character.category() == QChar::Other_Control ||
                         character.category() == QChar::Other_Format
                     ? QChar(QChar::ReplacementCharacter)
                     : character;
    return shown;
}

} // namespace helio
