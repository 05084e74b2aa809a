#include "helio/runtime/search/namepattern.h"

#include <QFile>

#include <climits>
#include <string_view>

namespace helio {

namespace {

// In bytes a letter may be longer in one case than in the other, so this is generous.
constexpr int longestKeyword = 4 * NAME_MAX;

constexpr std::string_view globCharacters = "*?[]\\";

} // namespace

NamePattern::NamePattern(const QString &keyword, Qt::CaseSensitivity caseSensitivity)
    : m_keyword(keyword), m_caseSensitivity(caseSensitivity)
{
}

bool NamePattern::canMatch() const
{
    return !m_keyword.isEmpty() && m_keyword.size() <= longestKeyword &&
           !m_keyword.contains(QLatin1Char('/')) && !m_keyword.contains(QChar::Null);
}

bool NamePattern::matches(const QByteArray &fileName) const
{
    return QFile::decodeName(fileName).contains(m_keyword, m_caseSensitivity);
}

QByteArray NamePattern::toGlob() const
{
    QByteArray pattern = QByteArrayLiteral("*");
    const QByteArray keyword = QFile::encodeName(m_keyword);
    for (const char c : keyword) {
        if (globCharacters.find(c) != std::string_view::npos)
            pattern += '\\';
        pattern += c;
    }
    return pattern + '*';
}

Qt::CaseSensitivity NamePattern::caseSensitivity() const
{
    return m_caseSensitivity;
}

} // namespace helio
