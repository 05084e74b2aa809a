#include "doctor/lines/unifieddiff.h"

#include "doctor/lines/linediff.h"
#include "doctor/lines/merge.h"

#include <algorithm>

namespace doctor {

namespace {

constexpr int contextLines = 3;

/// Where the line @p lines further up begins, not above @p least; subtracts from @p lines what is
/// missing.
int linesUp(const QByteArray &content, int position, int least, int &lines)
{
    int found = 0;
    for (; found < lines && position > least; ++found)
        position = position < 2 ? 0 : content.lastIndexOf('\n', position - 2) + 1;
    lines = found;
    return position;
}

/// Same downwards, not below @p most.
int linesDown(const QByteArray &content, int position, int most, int &lines)
{
    int found = 0;
    for (; found < lines && position < most; ++found) {
        const int feed = content.indexOf('\n', position);
        position = feed < 0 ? content.size() : feed + 1;
    }
    lines = found;
    return position;
}

int countLines(const QByteArray &content, int begin, int end)
{
    const auto feeds = std::count(content.begin() + begin, content.begin() + end, '\n');
    return int(feeds) + (end > begin && content[end - 1] != '\n' ? 1 : 0);
}

void appendMarked(QByteArray &text, char mark, const QByteArray &content, int begin, int end)
{
    while (begin < end) {
        const int feed = content.indexOf('\n', begin);
        const int next = feed < 0 || feed >= end ? end : feed + 1;
        text += mark;
        text.append(content.constData() + begin, next - begin);
        if (content[next - 1] != '\n')
            text += "\n\\ No newline at end of file\n";
        begin = next;
    }
}

/// "4,7": the first line and their number, as diff prints it; the line before where there are none.
QByteArray lineRange(int first, int count)
{
    QByteArray range = QByteArray::number(count == 0 ? first - 1 : first);
    if (count != 1)
        range += ',' + QByteArray::number(count);
    return range;
}

/// Writes hunks from the top down, so that every line is counted once.
class HunkWriter
{
public:
    HunkWriter(const QByteArray &before, const QByteArray &after) : m_before(before), m_after(after)
    {
    }

    /// The changes from @p first to before @p last, with context that ends before the change @p
    /// last.
    void append(const LineChange *first, const LineChange *last)
    {
        int above = contextLines;
        const int begin = linesUp(m_before, first->begin, m_position, above);
        m_line += countLines(m_before, m_position, begin);
        m_newLine += countLines(m_after, m_newPosition, first->newBegin) - above;

        QByteArray body;
        int position = begin;
        int count = 0;
        int newCount = 0;
        const auto appendEqual = [&](int end) {
            appendMarked(body, ' ', m_before, position, end);
            const int lines = countLines(m_before, position, end);
            count += lines;
            newCount += lines;
            position = end;
        };
        for (const LineChange *change = first; change != last; ++change) {
            appendEqual(change->begin);
            appendMarked(body, '-', m_before, change->begin, change->end);
            appendMarked(body, '+', m_after, change->newBegin, change->newEnd);
            count += countLines(m_before, change->begin, change->end);
            newCount += countLines(m_after, change->newBegin, change->newEnd);
            position = change->end;
        }
        int below = contextLines;
        const int newEnd = (last - 1)->newEnd;
        appendEqual(linesDown(m_before, position, m_before.size(), below));

        m_text +=
            "@@ -" + lineRange(m_line, count) + " +" + lineRange(m_newLine, newCount) + " @@\n";
        m_text += body;
        m_newPosition = newEnd + (position - (last - 1)->end);
        m_position = position;
        m_line += count;
        m_newLine += newCount;
    }

    const QByteArray &text() const { return m_text; }

private:
    const QByteArray &m_before;
    const QByteArray &m_after;
    int m_position = 0;
    int m_newPosition = 0;
    int m_line = 1;
    int m_newLine = 1;
    QByteArray m_text;
};

} // namespace

QByteArray unifiedDiff(const std::optional<QByteArray> &before,
                       const std::optional<QByteArray> &after, const QString &path)
{
    const QByteArray old = before.value_or(QByteArray());
    const QByteArray changed = after.value_or(QByteArray());
    if (before.has_value() == after.has_value() && old == changed)
        return {};
    const QByteArray name = path.toUtf8();
    if (!isText(old) || !isText(changed))
        return "Binary file " + name + " differs\n";

    const QVector<LineChange> changes = lineChanges(old, changed);
    HunkWriter writer(old, changed);
    for (const LineChange *first = changes.constBegin(); first != changes.constEnd();) {
        const LineChange *last = first + 1;
        for (; last != changes.constEnd(); ++last) {
            int between = 2 * contextLines + 1;
            linesDown(old, (last - 1)->end, last->begin, between);
            if (between > 2 * contextLines)
                break;
        }
        writer.append(first, last);
        first = last;
    }
    return "--- " + (before ? name : QByteArrayLiteral("/dev/null")) + "\n+++ " +
           (after ? name : QByteArrayLiteral("/dev/null")) + '\n' + writer.text();
}

} // namespace doctor
