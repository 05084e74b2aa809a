#include "doctor/editors/lineeditor.h"

#include "doctor/editors/edits.h"

#include <QRegularExpression>

#include <ctime>

#include "qtversion/qtversion.h"
#include "texts/texts.h"

namespace doctor {

namespace {

/// Limits of PCRE2 for one attempt at one place of a line; KiB of heap. Later settings of the same
/// limits in the pattern can only lower them. Without its compiler all steps are counted.
constexpr char limits[] = "(*NO_JIT)(*LIMIT_MATCH=200000)(*LIMIT_HEAP=65536)";
constexpr int longestPattern = 4096;
/// In longer lines each place is an attempt of its own, so that the time is looked at in between.
constexpr int shortLine = 256;
constexpr qint64 mostMilliseconds = 3000;

/// What this thread has computed for, so that a busy machine ends no search.
qint64 threadMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return qint64(time.tv_sec) * 1000 + time.tv_nsec / 1000000;
}

struct LineSpan
{
    Span text;
    int next = 0;
};

LineSpan lineFrom(const QByteArray &content, int position)
{
    const int feed = content.indexOf('\n', position);
    const int end = feed < 0 ? content.size() : feed;
    const bool isPair = feed > position && content.at(feed - 1) == '\r';
    return {{position, isPair ? end - 1 : end}, feed < 0 ? end : feed + 1};
}

/// A query made ready for many lines.
class Matcher
{
public:
    explicit Matcher(const LineQuery &query)
        : m_kind(query.kind),
          m_bytes(query.text.toUtf8()),
          m_end(threadMilliseconds() + mostMilliseconds)
    {
        if (!hasUtf8(query.text))
            m_problem = texts::tr("The text to look for is not valid Unicode.");
        else if (m_kind == LineQuery::Kind::Pattern)
            prepare(query.text);
    }

    QString problem() const { return m_problem; }

    bool matches(const QByteArray &line)
    {
        if (m_kind == LineQuery::Kind::Whole)
            return line == m_bytes;
        if (m_kind == LineQuery::Kind::Part)
            return line.contains(m_bytes);
        const QString text = utf8Text(line);
        return text.size() <= shortLine ? matchesFrom(text, 0, QRegularExpression::NoMatchOption)
                                        : matchesInLong(text);
    }

private:
    void prepare(const QString &pattern)
    {
        if (pattern.size() > longestPattern) {
            m_problem = texts::tr("The pattern is longer than 4096 characters.");
            return;
        }
        m_pattern.setPattern(QLatin1String(limits) + pattern);
        if (!m_pattern.isValid())
            m_problem =
                texts::tr("The pattern is broken at character %1: %2.")
                    .arg(m_pattern.patternErrorOffset() - static_cast<int>(sizeof limits) + 2)
                    .arg(m_pattern.errorString());
    }

    bool matchesInLong(const QString &text)
    {
        for (int i = 0; i <= text.size() && m_problem.isEmpty(); ++i) {
            const bool isInPair = i < text.size() && text.at(i).isLowSurrogate();
            if (!isInPair && matchesFrom(text, i, qtversion::matchAtOffset))
                return true;
        }
        return false;
    }

    bool matchesFrom(const QString &text, int offset, QRegularExpression::MatchOptions options)
    {
        options |= QRegularExpression::DontCheckSubjectStringMatchOption;
        const QRegularExpressionMatch match =
            m_pattern.match(text, offset, QRegularExpression::NormalMatch, options);
        if (!match.isValid() || threadMilliseconds() > m_end)
            m_problem = texts::tr("The pattern takes too long.");
        return match.hasMatch();
    }

    const LineQuery::Kind m_kind;
    const QByteArray m_bytes;
    const qint64 m_end;
    QRegularExpression m_pattern;
    QString m_problem;
};

struct Search
{
    std::optional<LineSpan> line;
    QString problem;
};

Search searchedFor(const QByteArray &content, const LineQuery &query)
{
    if (content.size() > maximumSize)
        return {std::nullopt, texts::tr("The content is larger than 64 MiB.")};
    Matcher matcher(query);
    for (int i = markSize(content); i < content.size() && matcher.problem().isEmpty();) {
        const LineSpan line = lineFrom(content, i);
        if (matcher.matches(bytesIn(content, line.text)))
            return {line, {}};
        i = line.next;
    }
    return {std::nullopt, matcher.problem()};
}

} // namespace

FoundLine findLine(const QByteArray &content, const LineQuery &query)
{
    const Search search = searchedFor(content, query);
    if (!search.line)
        return {std::nullopt, search.problem};
    const Span text = search.line->text;
    const int number = 1 + static_cast<int>(content.left(text.begin).count('\n'));
    return {FoundKey{utf8Text(bytesIn(content, text)), number}, {}};
}

EditedContent replaceLine(const QByteArray &content, const LineQuery &query, const QString &text)
{
    const bool isLine = hasUtf8(text) && !text.contains(QLatin1Char('\n')) &&
                        !text.contains(QLatin1Char('\r')) && !text.contains(QChar::Null);
    if (!isLine)
        return refused(texts::tr("The new text is more than one line or not text."));
    const Search search = searchedFor(content, query);
    if (!search.problem.isEmpty())
        return refused(search.problem);
    if (!search.line)
        return {content, {}};
    return edited(content, {{search.line->text, text.toUtf8()}});
}

EditedContent removeLine(const QByteArray &content, const LineQuery &query)
{
    const Search search = searchedFor(content, query);
    if (!search.problem.isEmpty())
        return refused(search.problem);
    if (!search.line)
        return {content, {}};
    return edited(content, {{{search.line->text.begin, search.line->next}, {}}});
}

} // namespace doctor
