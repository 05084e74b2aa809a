#include "doctor/conditions/texttemplate.h"

#include <functional>

#include "doctor/machine/pathpattern.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr char fallbackMark[] = ":-";
constexpr int longestText = 64 * 1024;

using Found = std::function<std::optional<QString>(const QString &name)>;

bool isNameCharacter(QChar character)
{
    return (character.unicode() < 0x80 && character.isLetterOrNumber()) ||
           character == QLatin1Char('_') || character == QLatin1Char('.') ||
           character == QLatin1Char('-');
}

/// Reads a text piece by piece.
class TemplateReader
{
public:
    TemplateReader(const QString &text, Found value, Found variable)
        : m_text(text), m_value(std::move(value)), m_variable(std::move(variable))
    {
    }

    Expansion read()
    {
        while (m_at < m_text.size() && m_problem.isEmpty() && m_result.size() < longestText)
            readPiece();
        if (m_result.size() >= longestText)
            m_problem = texts::tr("a text gets longer than %1 characters").arg(longestText);
        return {m_problem.isEmpty() ? m_result : QString(), m_problem};
    }

private:
    bool isNext(char character) const
    {
        return m_at < m_text.size() && m_text[m_at] == QLatin1Char(character);
    }

    void readPiece()
    {
        const QChar character = m_text[m_at++];
        if (character == QLatin1Char('{')) {
            readValue();
        } else if (character == QLatin1Char('$') && m_variable) {
            readVariable();
        } else {
            m_result += character;
        }
    }

    void readValue()
    {
        if (isNext('{')) {
            ++m_at;
            m_result += QLatin1Char('{');
            return;
        }
        const int end = m_text.indexOf(QLatin1Char('}'), m_at);
        const QString inside = m_text.mid(m_at, end - m_at);
        const QString name = inside.section(QLatin1String(fallbackMark), 0, 0);
        if (end < 0 || name.isEmpty() || !std::all_of(name.begin(), name.end(), isNameCharacter)) {
            m_problem = texts::tr("\"{\" needs a name and \"}\" after it; \"{{\" stands for \"{\"");
            return;
        }
        m_at = end + 1;
        const QString value = m_value(name).value_or(QString());
        m_result += value.isEmpty() ? inside.section(QLatin1String(fallbackMark), 1) : value;
    }

    void readVariable()
    {
        if (isNext('$')) {
            ++m_at;
            m_result += QLatin1Char('$');
            return;
        }
        const bool inBraces = isNext('{');
        if (inBraces)
            ++m_at;
        const int begin = m_at;
        while (m_at < m_text.size() &&
               (m_text[m_at] == QLatin1Char('_') ||
                (m_text[m_at].unicode() < 0x80 && m_text[m_at].isLetterOrNumber())))
            ++m_at;
        const QString name = m_text.mid(begin, m_at - begin);
        const std::optional<QString> fallback = inBraces ? readFallback() : std::nullopt;
        if (name.isEmpty())
            m_problem = texts::tr("\"$\" needs the name of a variable; \"$$\" stands for \"$\"");
        if (!m_problem.isEmpty())
            return;
        const std::optional<QString> value = m_variable(name);
        if (!value && !fallback)
            m_problem = texts::tr("the variable %1 is not set").arg(name);
        m_result += value ? *value : fallback.value_or(QString());
    }

    /// What stands behind the name in braces.
    std::optional<QString> readFallback()
    {
        const int end = m_text.indexOf(QLatin1Char('}'), m_at);
        const bool isMarked = QStringView(m_text).mid(m_at, 2) == QLatin1String(fallbackMark);
        if (end < 0 || (!isMarked && end != m_at)) {
            m_problem = texts::tr("a variable in braces is ${NAME} or ${NAME:-text}");
            return std::nullopt;
        }
        const QString text = m_text.mid(m_at + 2, end - m_at - 2);
        m_at = end + 1;
        if (!isMarked)
            return std::nullopt;
        const Expansion inner = TemplateReader(text, m_value, m_variable).read();
        m_problem = inner.problem;
        return inner.text;
    }

    const QString m_text;
    const Found m_value;
    const Found m_variable;
    QString m_result;
    QString m_problem;
    int m_at = 0;
};

} // namespace

Expansion expanded(const QString &text, const Values &values, const Machine &machine,
                   Filling filling)
{
    const auto filled = [filling](const QString &piece) {
        return filling == Filling::ForPathPattern ? escapedForPattern(piece) : piece;
    };
    const Found value = [&](const QString &name) -> std::optional<QString> {
        const auto found = values.constFind(name);
        return found == values.constEnd() ? std::nullopt : std::optional(filled(found->shown()));
    };
    const Found variable = [&](const QString &name) -> std::optional<QString> {
        const std::optional<QString> found = machine.variable(name);
        return found ? std::optional(filled(*found)) : std::nullopt;
    };
    return TemplateReader(text, value, variable).read();
}

QString filledIn(const QString &text, const QMap<QString, QString> &values)
{
    const Found value = [&values](const QString &name) -> std::optional<QString> {
        return values.value(name);
    };
    return TemplateReader(text, value, nullptr).read().text;
}

QStringList placeholdersOf(const QString &text)
{
    QStringList names;
    const Found note = [&names](const QString &name) -> std::optional<QString> {
        names.append(name);
        return QString();
    };
    TemplateReader(text, note, [](const QString &) { return QString(); }).read();
    return names;
}

bool hasPlaceholders(const QString &text)
{
    return text.contains(QLatin1Char('{')) || text.contains(QLatin1Char('$'));
}

QString templateProblem(const QString &text)
{
    const Found anything = [](const QString &) { return QString(); };
    return TemplateReader(text, anything, anything).read().problem;
}

} // namespace doctor
