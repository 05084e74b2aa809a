#include "doctor/lines/merge.h"

#include "doctor/lines/linediff.h"

#include <algorithm>

namespace doctor {

namespace {

/// A change of the base with what comes in its place.
struct Replacement
{
    int begin;
    int end;
    QByteArray content;

    bool operator==(const Replacement &other) const
    {
        return begin == other.begin && end == other.end && content == other.content;
    }
};

void appendChanges(QVector<Replacement> &replacements, const QByteArray &base,
                   const QByteArray &changed)
{
    const QVector<LineChange> changes = lineChanges(base, changed);
    for (const LineChange &change : changes)
        replacements.append({change.begin, change.end,
                             changed.mid(change.newBegin, change.newEnd - change.newBegin)});
}

/// Whether the result depends on which of the two comes first. @p first does not begin after @p
/// second.
bool areInConflict(const Replacement &first, const Replacement &second)
{
    const bool bothInsert = first.begin == first.end && second.begin == second.end;
    return second.begin < first.end || (bothInsert && first.begin == second.begin);
}

/// A last line may have no line feed; what comes after it still begins a line.
void appendLines(QByteArray &text, const QByteArray &lines)
{
    if (!text.isEmpty() && !lines.isEmpty() && !text.endsWith('\n'))
        text += text.contains("\r\n") ? "\r\n" : "\n";
    text += lines;
}

} // namespace

bool isText(const QByteArray &content)
{
    return !content.contains('\0');
}

std::optional<QByteArray> mergedLines(const QByteArray &base, const QByteArray &ours,
                                      const QByteArray &theirs)
{
    if (!isText(base) || !isText(ours) || !isText(theirs))
        return {};
    QVector<Replacement> replacements;
    appendChanges(replacements, base, ours);
    appendChanges(replacements, base, theirs);
    std::sort(replacements.begin(), replacements.end(), [](const auto &first, const auto &second) {
        return std::make_pair(first.begin, first.end) < std::make_pair(second.begin, second.end);
    });

    QByteArray merged;
    int position = 0;
    const Replacement *last = nullptr;
    for (const Replacement &replacement : qAsConst(replacements)) {
        if (last && *last == replacement)
            continue;
        if (last && areInConflict(*last, replacement))
            return {};
        appendLines(merged, base.mid(position, replacement.begin - position));
        appendLines(merged, replacement.content);
        position = replacement.end;
        last = &replacement;
    }
    appendLines(merged, base.mid(position));
    return merged;
}

} // namespace doctor
