#include "doctor/editors/json/jsonplace.h"

namespace doctor {

namespace {

using Kind = JsonToken::Kind;

/// Reads once through a text and notes where the key stands.
class Finder
{
public:
    Finder(const QByteArray &content, const QStringList &key)
        : m_content(content), m_key(key), m_reader(content)
    {
        for (const QString &part : key) {
            const int index = part.toInt();
            m_indexes.append(part == QString::number(index) ? index : -1);
        }
    }

    JsonPlace place()
    {
        while (true) {
            const JsonToken token = m_reader.next();
            if (token.kind == Kind::Broken)
                m_place.problem = m_reader.problem();
            if (token.kind == Kind::Broken || token.kind == Kind::Finished)
                return m_place;
            take(token);
        }
    }

private:
    /// True for what stands directly in the innermost container that the key leads to.
    bool isMember(int depth) const { return depth == m_chain.size(); }

    void take(const JsonToken &token)
    {
        const bool isBegin = token.kind == Kind::Begin;
        // A bracket counts for where it stands, not for what it opens or closes.
        const int depth = m_reader.depth() - (isBegin ? 1 : 0);
        if (token.kind == Kind::End) {
            if (depth < m_chain.size())
                leave();
            if (isMember(depth))
                endMember(token.span.end);
        } else if (isMember(depth)) {
            takeMember(token);
        }
    }

    void takeMember(const JsonToken &token)
    {
        if (token.kind == Kind::Name) {
            beginMember(token.span.begin);
            m_chain.last().colon.begin = token.span.end;
            m_isWanted = isWantedName(token.span);
            return;
        }
        if (m_chain.isEmpty()) {
            m_isWanted = true;
        } else if (m_chain.last().isObject) {
            m_chain.last().colon.end = token.span.begin;
        } else {
            beginMember(token.span.begin);
            m_isWanted = m_indexes.at(m_chain.size() - 1) == m_chain.last().members - 1;
        }
        if (m_isWanted)
            takeWanted(token);
        if (token.kind != Kind::Begin)
            endMember(token.span.end);
    }

    /// The last one replaces what an earlier member of the same name had.
    void takeWanted(const JsonToken &token)
    {
        m_place.parts = m_chain.size();
        m_place.value = token;
        if (m_place.parts < m_key.size())
            m_place.removal.clear();
        if (token.kind != Kind::Begin)
            return;
        JsonContainer container;
        container.isObject = m_reader.isInObject();
        container.begin = token.span.end;
        m_place.container = container;
        if (m_place.parts == m_key.size())
            return;
        m_chain.append(container);
        m_isWanted = false;
    }

    void beginMember(int position)
    {
        JsonContainer &container = m_chain.last();
        cut(position);
        container.lastSpace = container.members == 0 ? container.begin : commaEnd(position);
        container.last.begin = position;
        ++container.members;
    }

    void endMember(int position)
    {
        if (m_chain.isEmpty())
            return;
        m_chain.last().last.end = position;
        if (m_chain.size() == m_key.size() && m_isWanted) {
            if (m_place.value.kind == Kind::Begin)
                m_place.value.span.end = position;
            m_pending = m_chain.last().last;
        } else if (m_chain.size() == m_key.size()) {
            m_kept = position;
        }
        m_isWanted = false;
    }

    /// Whitespace behind the last comma before position.
    int commaEnd(int position) const
    {
        while (m_content.at(position - 1) != ',')
            --position;
        return position;
    }

    /// The wanted member goes with all up to the next one.
    void cut(int next)
    {
        if (m_pending)
            m_place.removal.append(Span{m_pending->begin, next});
        m_pending.reset();
    }

    void leave()
    {
        if (m_chain.size() == m_key.size()) {
            if (m_pending)
                cutLast();
            m_kept.reset();
        }
        if (m_place.parts == m_chain.size() - 1)
            m_place.container = m_chain.last();
        m_chain.removeLast();
        m_isWanted = false;
    }

    /// The last members go with the comma before them.
    void cutLast()
    {
        const int begin = m_kept ? *m_kept : m_chain.last().begin;
        QVector<Span> &removal = m_place.removal;
        while (!removal.isEmpty() && removal.last().begin >= begin)
            removal.removeLast();
        removal.append(Span{begin, m_pending->end});
        m_pending.reset();
    }

    bool isWantedName(Span name) const
    {
        const QString &wanted = m_key.at(m_chain.size() - 1);
        constexpr int mostBytesPerUnit = 6;
        return name.size() - 2 <= mostBytesPerUnit * wanted.size() &&
               decodedJson(bytesIn(m_content, name)) == wanted;
    }

    const QByteArray &m_content;
    const QStringList &m_key;
    /// The key's parts as array indexes; -1 for those that are none.
    QVector<int> m_indexes;
    JsonReader m_reader;
    JsonPlace m_place;
    /// The containers from the outermost that the key leads through and that are open.
    QVector<JsonContainer> m_chain;
    /// What is being read is what the key's next part names.
    bool m_isWanted = false;
    /// A wanted member whose comma was not read yet, and the end of the last other member.
    std::optional<Span> m_pending;
    std::optional<int> m_kept;
};

} // namespace

JsonPlace placeInJson(const QByteArray &content, const QStringList &key)
{
    return Finder(content, key).place();
}

} // namespace doctor
