#include "helio/ctl/why/whycommand.h"

#include <QFile>
#include <QJsonDocument>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <memory>

#include <unistd.h>

#include "doctor/journal/journal.h"
#include "helio/ctl/doctor/jsonprinter.h"
#include "helio/ctl/doctor/messagelocale.h"
#include "helio/ctl/doctor/textprinter.h"
#include "helio/ctl/why/accessreport.h"
#include "helio/ctl/why/inputcommand.h"
#include "helio/ctl/why/opencommand.h"
#include "helio/ctl/why/whyline.h"
#include "helio/doctor/accessjson.h"
#include "helio/doctor/verifiedrepair.h"
#include "texts/texts.h"

namespace ctl {

namespace {

using doctor::Denial;
using doctor::JournalResult;
using helio::RepairOutcome;

constexpr char checkName[] = "why.denied";
constexpr char repairName[] = "open";

void print(const QString &text, std::FILE *stream)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fflush(stream);
}

int statusOf(Denial::Verdict verdict)
{
    switch (verdict) {
    case Denial::Verdict::Granted:
        return AccessGranted;
    case Denial::Verdict::Denied:
        return AccessDenied;
    case Denial::Verdict::Undecided:
        break;
    }
    return AccessUndecided;
}

Denial look(const WhyLine &line)
{
    return doctor::whyDenied(QFile::encodeName(line.path), line.access);
}

void printDenial(const WhyLine &line, const Denial &denial)
{
    if (line.json)
        print(QString::fromUtf8(QJsonDocument(helio::accessObject(line.path, line.access, denial))
                                    .toJson(QJsonDocument::Compact)) +
                  QLatin1Char('\n'),
              stdout);
    else
        print(accessText(line.path, line.access, denial), stdout);
}

bool isSameBlock(const Denial &one, const Denial &other)
{
    const auto blocker = [](const Denial &denial) {
        return denial.passage.chain.at(denial.passage.blocker).path;
    };
    return one.passage.obstacle == other.passage.obstacle && blocker(one) == blocker(other);
}

/// Applies the remedy and looks again; takes back what does not help.
RepairOutcome open(const WhyLine &line, Denial &denial, DoctorPrinter &printer)
{
    using Result = RepairOutcome::Result;
    doctor::Plan plan{
        QLatin1String(checkName), QLatin1String(repairName), {denial.remedy->change}, {}};
    RepairOutcome outcome{plan.check, plan.repair, Result::Planned, 0, {}, {}};
    printer.printChange(plan.repair, denial.remedy->change);
    if (line.dryRun)
        return outcome;
    outcome.result = Result::Refused;
    if (!line.yes && !printer.asks(texts::tr("Repair?"))) {
        outcome.reason = texts::tr("it was not confirmed");
        return outcome;
    }
    doctor::Journal journal;
    const JournalResult applied = journal.apply(plan);
    for (const QString &note : applied.notes)
        printer.printNote(note);
    outcome.journal = applied.number;
    outcome.reason = applied.reason;
    if (applied.outcome != JournalResult::Outcome::Applied)
        return outcome;
    const Denial now = look(line);
    outcome.result = Result::Repaired;
    if (isSameBlock(denial, now)) {
        const JournalResult undone = journal.undo(applied.number);
        const bool isUndone = undone.outcome == JournalResult::Outcome::Undone;
        outcome.result = isUndone ? Result::Unchanged : Result::Failed;
        outcome.reason = isUndone ? texts::tr("the finding was still there, so it was taken back")
                                  : undone.reason;
    }
    denial = now;
    return outcome;
}

/// Whether the user may apply the remedy.
bool isOwn(const Denial &denial)
{
    return denial.remedy && denial.remedy->change.kind == doctor::Change::Kind::Rights;
}

/// Opens one component after the other, as far as the user may.
Denial fix(const WhyLine &line, Denial denial)
{
    std::unique_ptr<DoctorPrinter> printer;
    if (line.json)
        printer = std::make_unique<JsonPrinter>(QString());
    else
        printer = std::make_unique<TextPrinter>(QString(), ::isatty(STDOUT_FILENO) == 1);
    while (isOwn(denial)) {
        const RepairOutcome outcome = open(line, denial, *printer);
        printer->printRepair(outcome);
        if (outcome.result != RepairOutcome::Result::Repaired)
            break;
    }
    return denial;
}

int runWhyDenied(const QStringList &arguments)
{
    const WhyLine line = parseWhyLine(arguments);
    if (!line.fault.isEmpty()) {
        print(QStringLiteral("assistantctl why: %1\n").arg(line.fault), stderr);
        return WhyMisused;
    }
    if (!line.text.isEmpty()) {
        print(line.text, stdout);
        return AccessGranted;
    }
    // Bytes that are not text in the locale's encoding arrive as this.
    if (line.path.contains(QChar(QChar::ReplacementCharacter))) {
        print(texts::tr("The path is not text in the encoding of this terminal.\n"), stderr);
        return AccessUndecided;
    }
    Denial denial = look(line);
    printDenial(line, denial);
    if (line.fix && isOwn(denial)) {
        denial = fix(line, denial);
        printDenial(line, denial);
    }
    return statusOf(denial.verdict);
}

struct Question
{
    const char *word;
    int (*run)(const QStringList &arguments);
};
constexpr Question questions[] = {
    {"input", &runWhyInput},
    {"open", &runWhyOpen},
};

} // namespace

/// The rest belongs to "why denied", which also says what is wrong.
int runWhy(const QStringList &arguments)
{
    texts::useLanguage(messageLocale(doctor::thisMachine()));
    QStringList words = arguments;
    // Options may stand before the question.
    const auto isWord = [](const QString &word) { return !word.startsWith(QLatin1Char('-')); };
    const auto first = std::find_if(words.begin(), words.end(), isWord);
    const auto *const question =
        std::find_if(std::begin(questions), std::end(questions), [&](const Question &candidate) {
            return first != words.end() && *first == QLatin1String(candidate.word);
        });
    if (question == std::end(questions))
        return runWhyDenied(arguments);
    words.erase(first);
    return question->run(words);
}

} // namespace ctl
