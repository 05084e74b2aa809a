#pragma once

#include <QByteArrayList>
#include <QRandomGenerator>
#include <QString>

#include <algorithm>

namespace generated {

/// Chooses by a seed: the same choices in every run.
class Chooser
{
public:
    explicit Chooser(quint32 seed) : m_random(seed) {}

    int below(int limit) { return static_cast<int>(m_random.bounded(limit)); }
    bool percent(int chance) { return below(100) < chance; }
    QByteArray of(const QByteArrayList &list) { return list.at(below(list.size())); }

    /// Text with characters that one format or another must escape.
    QString text(const QString &more = QString())
    {
        const QString characters =
            QStringLiteral("abcAF019 \t\n\r\\\"';,=#%&<>/[]{}:@?éß中文🙂\ufeff~") + more;
        QString result;
        for (int length = below(9); length > 0; --length) {
            const QChar character = characters.at(below(characters.size()));
            if (character.isSurrogate())
                result += QStringLiteral("🙂");
            else
                result += character;
        }
        return result;
    }

private:
    QRandomGenerator m_random;
};

/// True if one is the other with some bytes in a row put in.
inline bool isInsertion(const QByteArray &shorter, const QByteArray &longer)
{
    const auto first = std::mismatch(shorter.begin(), shorter.end(), longer.begin(), longer.end());
    const auto last =
        std::mismatch(shorter.rbegin(), shorter.rend(), longer.rbegin(), longer.rend());
    const auto same = (first.first - shorter.begin()) + (last.first - shorter.rbegin());
    return longer.size() >= shorter.size() && same >= shorter.size();
}

/// True if nothing changed but what stood between two parts of the content.
inline bool isBetween(const QByteArray &content, const QByteArray &before, const QByteArray &after)
{
    return content.size() >= before.size() + after.size() && content.startsWith(before) &&
           content.endsWith(after);
}

} // namespace generated
