#include "doctor/why/open/magic.h"

#include <QSysInfo>

#include <algorithm>

namespace doctor {

namespace {

constexpr int header = 12;

/// Reads the file piece by piece.
class Reader
{
public:
    explicit Reader(const QByteArray &content) : m_content(content) {}

    bool isAtEnd() const { return m_position >= m_content.size(); }
    bool take(char wanted)
    {
        const bool isThere = !isAtEnd() && m_content.at(m_position) == wanted;
        m_position += isThere ? 1 : 0;
        return isThere;
    }
    int number(int otherwise)
    {
        const int start = m_position;
        while (!isAtEnd() && m_content.at(m_position) >= '0' && m_content.at(m_position) <= '9')
            ++m_position;
        bool isNumber = false;
        const int value = m_content.mid(start, m_position - start).toInt(&isNumber);
        return isNumber ? value : otherwise;
    }
    /// Empty if there are not so many.
    QByteArray bytes(int count)
    {
        QByteArray found = count <= m_content.size() - m_position ? m_content.mid(m_position, count)
                                                                  : QByteArray();
        m_position += found.size();
        return found;
    }
    QByteArray until(char end)
    {
        const int position = m_content.indexOf(end, m_position);
        return bytes((position < 0 ? m_content.size() : position) - m_position);
    }

private:
    QByteArray m_content;
    int m_position = header;
};

/// Words stand in network order.
QByteArray inHostOrder(QByteArray bytes, int wordSize)
{
    if (QSysInfo::ByteOrder == QSysInfo::BigEndian || (wordSize != 2 && wordSize != 4))
        return bytes;
    for (int start = 0; start + wordSize <= bytes.size(); start += wordSize)
        std::reverse(bytes.begin() + start, bytes.begin() + start + wordSize);
    return bytes;
}

/// "depth>offset=LLvalue&mask~word+range" with a length of two bytes.
bool readRule(Reader &reader, MagicRule &rule)
{
    rule.depth = reader.number(0);
    if (!reader.take('>'))
        return false;
    rule.offset = reader.number(0);
    if (!reader.take('='))
        return false;
    const QByteArray length = reader.bytes(2);
    if (length.size() != 2)
        return false;
    const int size =
        static_cast<unsigned char>(length.at(0)) * 256 + static_cast<unsigned char>(length.at(1));
    rule.value = reader.bytes(size);
    if (size == 0 || rule.value.size() != size)
        return false;
    if (reader.take('&'))
        rule.mask = reader.bytes(size);
    if (reader.take('~')) {
        const int wordSize = reader.number(1);
        rule.value = inHostOrder(rule.value, wordSize);
        rule.mask = inHostOrder(rule.mask, wordSize);
    }
    if (reader.take('+'))
        rule.range = std::max(reader.number(1), 1);
    return reader.take('\n');
}

bool isAt(const MagicRule &rule, const QByteArray &beginning, int offset)
{
    for (int index = 0; index < rule.value.size(); ++index) {
        const char mask = index < rule.mask.size() ? rule.mask.at(index) : '\xff';
        if (((rule.value.at(index) ^ beginning.at(offset + index)) & mask) != 0)
            return false;
    }
    return true;
}

bool holds(const MagicRule &rule, const QByteArray &beginning)
{
    const qint64 last = qint64(beginning.size()) - rule.value.size();
    const qint64 end = std::min<qint64>(qint64(rule.offset) + rule.range, last + 1);
    for (qint64 offset = rule.offset; offset < end; ++offset) {
        if (isAt(rule, beginning, static_cast<int>(offset)))
            return true;
    }
    return false;
}

bool holdsAny(const MagicType &type, const QByteArray &beginning)
{
    // Inner rules stand behind theirs; those of a rule that does not hold are passed over.
    int depth = 0;
    for (int index = 0; index < type.rules.size(); ++index) {
        const MagicRule &rule = type.rules.at(index);
        if (rule.depth < depth)
            depth = rule.depth;
        if (rule.depth != depth || !holds(rule, beginning))
            continue;
        const bool hasInner =
            index + 1 < type.rules.size() && type.rules.at(index + 1).depth > rule.depth;
        if (!hasInner)
            return true;
        ++depth;
    }
    return false;
}

} // namespace

QVector<MagicType> parseMagic(const QByteArray &content)
{
    QVector<MagicType> types;
    Reader reader(content);
    if (!content.startsWith("MIME-Magic"))
        return types;
    while (reader.take('[')) {
        MagicType type;
        type.priority = reader.number(0);
        if (!reader.take(':'))
            break;
        type.type = QString::fromUtf8(reader.until(']'));
        if (!reader.take(']') || !reader.take('\n'))
            break;
        for (;;) {
            Reader ahead = reader;
            MagicRule rule;
            if (!readRule(ahead, rule))
                break;
            type.rules.append(rule);
            reader = ahead;
        }
        types.append(type);
    }
    return types;
}

const MagicType *matchingType(const QVector<MagicType> &types, const QByteArray &beginning)
{
    const auto found =
        std::find_if(types.begin(), types.end(),
                     [&beginning](const MagicType &type) { return holdsAny(type, beginning); });
    return found == types.end() ? nullptr : &*found;
}

} // namespace doctor
