#include "programs/eptools/replacecommand.h"

#include <cstdio>

#include "programs/replace/replacing.h"
#include "texts/texts.h"

namespace tools {

namespace {

using doctor::JournalResult;

constexpr int failed = 1;
constexpr int wrongUsage = 2;

void print(std::FILE *stream, const QString &text)
{
    std::fprintf(stream, "%s\n", text.toUtf8().constData());
}

int usage()
{
    print(stderr, QStringLiteral("usage: eptools -replacefile [--ignore-case] [--replace TEXT] "
                                 "FIND FILE|FOLDER...\n"
                                 "       eptools -replacefile --undo [NUMBER]"));
    return wrongUsage;
}

int tell(const JournalResult &result, const QString &done)
{
    const bool isDone = result.outcome == JournalResult::Outcome::Applied ||
                        result.outcome == JournalResult::Outcome::Undone;
    for (const QString &line : result.kept + result.notes)
        print(stderr, line);
    print(isDone ? stdout : stderr, isDone
                                        ? done.arg(result.number)
                                        : texts::tr("Nothing was changed: %1").arg(result.reason));
    return isDone ? 0 : failed;
}

int undo(const QStringList &words)
{
    bool isNumber = true;
    const int number = words.isEmpty() ? 0 : words.first().toInt(&isNumber);
    if (!isNumber || number < 0 || words.size() > 1)
        return usage();
    return tell(programs::undoReplacing(number), texts::tr("Replacement %1 was undone."));
}

/// The value behind an option, which is taken out; nothing without the option.
std::optional<QString> takenValue(QStringList &words, const QString &option)
{
    const int at = words.indexOf(option);
    if (at < 0 || at + 1 >= words.size())
        return std::nullopt;
    words.removeAt(at);
    return words.takeAt(at);
}

} // namespace

int replaceCommand(QStringList words)
{
    if (words.value(0) == QLatin1String("--undo"))
        return undo(words.mid(1));
    programs::Search search;
    search.ignoresCase = words.removeAll(QStringLiteral("--ignore-case")) > 0;
    const std::optional<QString> replacement = takenValue(words, QStringLiteral("--replace"));
    if (words.size() < 2 || words.first().isEmpty() ||
        words.first().startsWith(QLatin1String("--")))
        return usage();
    search.find = words.takeFirst();
    search.replacement = replacement.value_or(QString());
    QVector<programs::SearchedDocument> found;
    int hits = 0;
    bool isWhole = true;
    for (const QString &path : programs::documentsIn(words)) {
        const programs::SearchedDocument document = programs::searchedDocument(path, search);
        if (!document.problem.isEmpty())
            print(stderr, QStringLiteral("%1: %2").arg(path, document.problem));
        for (const programs::Hit &hit : document.hits)
            print(stdout,
                  QStringLiteral("%1: %2[%3]%4").arg(path, hit.before, hit.found, hit.after));
        isWhole = isWhole && document.problem.isEmpty();
        hits += document.hits.size();
        if (!document.hits.isEmpty())
            found.append(document);
    }
    print(stdout, texts::tr("Hits: %1, in documents: %2.").arg(hits).arg(found.size()));
    if (!replacement || found.isEmpty())
        return isWhole ? 0 : failed;
    const int status =
        tell(programs::replaceIn(found),
             texts::tr("All were replaced. To undo: eptools -replacefile --undo %1"));
    return isWhole ? status : failed;
}

} // namespace tools
