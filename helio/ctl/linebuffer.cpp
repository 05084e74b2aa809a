#include "helio/ctl/linebuffer.h"

#include <utility>

namespace ctl {

void LineBuffer::append(const char *bytes, int count)
{
    dropTaken();
    m_bytes.append(bytes, count);
}

std::optional<LineBuffer::Line> LineBuffer::takeLine()
{
    const int end = m_bytes.indexOf('\n', m_searched);
    const int length = (end < 0 ? m_bytes.size() : end) - m_begin;
    m_isDropping = m_isDropping || length > m_longestLine;
    if (end < 0) {
        if (m_isDropping)
            m_begin = m_bytes.size();
        m_searched = m_bytes.size();
        return std::nullopt;
    }
    Line line{m_isDropping ? QByteArray() : m_bytes.mid(m_begin, length), m_isDropping};
    m_isDropping = false;
    m_begin = m_searched = end + 1;
    return line;
}

/// Moves the rest, which is short compared to what was taken, to the front.
void LineBuffer::dropTaken()
{
    if (m_begin == m_bytes.size())
        m_bytes.clear();
    else
        m_bytes.remove(0, m_begin);
    m_searched -= std::exchange(m_begin, 0);
}

} // namespace ctl
