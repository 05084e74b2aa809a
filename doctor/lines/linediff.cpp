#include "doctor/lines/linediff.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace doctor {

namespace {

/// Beyond these, what is left is one change: a person does not read it line by line, and time stays
/// below a second.
constexpr int mostLines = 400000;
constexpr int mostEdits = 1500;

/// A content's lines as numbers, equal for equal lines, and where each begins.
struct Lines
{
    std::vector<int> ids;
    std::vector<int> begins;
};

using Numbers = std::unordered_map<std::string_view, int>;

/// The lines of bytes @p begin to @p end of @p content.
Lines linesOf(const QByteArray &content, int begin, int end, Numbers &numbers)
{
    Lines lines;
    while (begin < end) {
        const int feed = content.indexOf('\n', begin);
        const int next = feed < 0 || feed >= end ? end : feed + 1;
        const std::string_view line(content.constData() + begin, std::size_t(next - begin));
        lines.ids.push_back(numbers.emplace(line, int(numbers.size())).first->second);
        lines.begins.push_back(begin);
        begin = next;
    }
    lines.begins.push_back(end);
    return lines;
}

/// E. W. Myers, "An O(ND) Difference Algorithm and Its Variations", in linear space: searches from
/// both corners for a point in the middle of a shortest path, then does the same for the two
/// halves.
class Comparison
{
public:
    Comparison(const std::vector<int> &before, const std::vector<int> &after)
        : m_before(before), m_after(after), m_removed(before.size()), m_added(after.size())
    {
        compare({0, 0}, {int(before.size()), int(after.size())});
    }

    bool isRemoved(int line) const { return m_removed[std::size_t(line)]; }
    bool isAdded(int line) const { return m_added[std::size_t(line)]; }

private:
    struct Point
    {
        int x;
        int y;
    };

    /// How far the search came from one corner: the largest x on each diagonal x - y, -1 for none.
    class Search
    {
    public:
        explicit Search(int most) : m_reach(2 * std::size_t(most) + 3, -1), m_most(most)
        {
            at(1) = 0;
        }
        int &at(int diagonal)
        {
            const int index = diagonal + m_most + 1;
            return m_reach[std::size_t(index)];
        }
        int reach(int diagonal) const
        {
            const int index = diagonal + m_most + 1;
            return index < 0 || index >= int(m_reach.size()) ? -1 : m_reach[std::size_t(index)];
        }
        int skippedLow = 0;
        int skippedHigh = 0;

    private:
        std::vector<int> m_reach;
        int m_most;
    };

    bool areEqual(int x, int y) const
    {
        return m_before[std::size_t(x)] == m_after[std::size_t(y)];
    }

    void compare(Point from, Point to)
    {
        while (from.x < to.x && from.y < to.y && areEqual(from.x, from.y))
            ++from.x, ++from.y;
        while (from.x < to.x && from.y < to.y && areEqual(to.x - 1, to.y - 1))
            --to.x, --to.y;
        Point middle{0, 0};
        if (from.x == to.x || from.y == to.y || !findMiddle(from, to, middle)) {
            std::fill(m_removed.begin() + from.x, m_removed.begin() + to.x, true);
            std::fill(m_added.begin() + from.y, m_added.begin() + to.y, true);
            return;
        }
        compare(from, middle);
        compare(middle, to);
    }

    /// False if the middle is further away than the effort allowed.
    bool findMiddle(Point from, Point to, Point &middle) const
    {
        const Point size{to.x - from.x, to.y - from.y};
        const int delta = size.x - size.y;
        const int most = std::min((size.x + size.y + 1) / 2, mostEdits);
        Search forward(most);
        Search backward(most);
        const auto equalForward = [&](int x, int y) { return areEqual(from.x + x, from.y + y); };
        const auto equalBackward = [&](int x, int y) {
            return areEqual(to.x - 1 - x, to.y - 1 - y);
        };
        int diagonal = 0;
        for (int edits = 0; edits < most; ++edits) {
            const bool isMet = advance(forward, delta % 2 != 0 ? &backward : nullptr, edits, size,
                                       equalForward, diagonal);
            if (!isMet) {
                if (!advance(backward, delta % 2 == 0 ? &forward : nullptr, edits, size,
                             equalBackward, diagonal))
                    continue;
                diagonal = delta - diagonal;
            }
            const int x = forward.reach(diagonal);
            middle = {from.x + x, from.y + x - diagonal};
            return true;
        }
        return false;
    }

    /// One more edit on each diagonal. True, with the diagonal, if that met the search from the
    /// other corner.
    template<typename Equal>
    static bool advance(Search &search, const Search *other, int edits, Point size, Equal areEqual,
                        int &diagonal)
    {
        for (int k = search.skippedLow - edits; k <= edits - search.skippedHigh; k += 2) {
            const bool isDown = k == -edits || (k != edits && search.at(k - 1) < search.at(k + 1));
            int x = isDown ? search.at(k + 1) : search.at(k - 1) + 1;
            while (x < size.x && x - k < size.y && areEqual(x, x - k))
                ++x;
            search.at(k) = x;
            if (x > size.x) {
                search.skippedHigh += 2;
            } else if (x - k > size.y) {
                search.skippedLow += 2;
            } else if (other) {
                const int reach = other->reach(size.x - size.y - k);
                if (reach >= 0 && x + reach >= size.x) {
                    diagonal = k;
                    return true;
                }
            }
        }
        return false;
    }

    const std::vector<int> &m_before;
    const std::vector<int> &m_after;
    std::vector<bool> m_removed;
    std::vector<bool> m_added;
};

/// Bytes in whole lines with which both begin.
int commonHead(const QByteArray &before, const QByteArray &after)
{
    const auto [end, other] =
        std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    if (end == before.end() && other == after.end())
        return before.size();
    return int(end - before.begin()) == 0
               ? 0
               : before.lastIndexOf('\n', int(end - before.begin()) - 1) + 1;
}

/// Bytes in whole lines with which both end, behind the first @p head.
int commonTail(const QByteArray &before, const QByteArray &after, int head)
{
    const int most = std::min(before.size(), after.size()) - head;
    int tail = 0;
    while (tail < most && before[before.size() - 1 - tail] == after[after.size() - 1 - tail])
        ++tail;
    const auto beginsLine = [](const QByteArray &content, int position) {
        return position == 0 || content[position - 1] == '\n';
    };
    while (tail > 0 &&
           !(beginsLine(before, before.size() - tail) && beginsLine(after, after.size() - tail)))
        --tail;
    return tail;
}

} // namespace

QVector<LineChange> lineChanges(const QByteArray &before, const QByteArray &after)
{
    const int head = commonHead(before, after);
    const int tail = commonTail(before, after, head);
    const int end = before.size() - tail;
    const int newEnd = after.size() - tail;
    if (head == end && head == newEnd)
        return {};
    const auto feeds = [head](const QByteArray &content, int to) {
        return std::count(content.begin() + head, content.begin() + to, '\n');
    };
    if (feeds(before, end) + feeds(after, newEnd) > mostLines)
        return {{head, end, head, newEnd}};

    Numbers numbers;
    const Lines lines = linesOf(before, head, end, numbers);
    const Lines newLines = linesOf(after, head, newEnd, numbers);
    const Comparison comparison(lines.ids, newLines.ids);
    QVector<LineChange> changes;
    const int count = int(lines.ids.size());
    const int newCount = int(newLines.ids.size());
    for (int line = 0, newLine = 0; line < count || newLine < newCount; ++line, ++newLine) {
        const int first = line;
        const int newFirst = newLine;
        while (line < count && comparison.isRemoved(line))
            ++line;
        while (newLine < newCount && comparison.isAdded(newLine))
            ++newLine;
        if (line > first || newLine > newFirst) {
            const auto at = [](const Lines &of, int index) {
                return of.begins[std::size_t(index)];
            };
            changes.append(
                {at(lines, first), at(lines, line), at(newLines, newFirst), at(newLines, newLine)});
        }
    }
    return changes;
}

} // namespace doctor
