#pragma once

#include <QByteArray>

#include <optional>

namespace ctl {

/// Cuts what is read piece by piece into lines.
class LineBuffer
{
public:
    /// A line without its line feed, or the fact that one was too long: its bytes are dropped.
    struct Line
    {
        QByteArray text;
        bool isTooLong = false;
    };

    explicit LineBuffer(int longestLine) : m_longestLine(longestLine) {}

    void append(const char *bytes, int count);

    /// The next whole line; nothing if more has to be read first.
    std::optional<Line> takeLine();

    /// Whether the input ends in a line without line feed.
    bool isInLine() const { return m_isDropping || m_begin < m_bytes.size(); }

private:
    void dropTaken();

    int m_longestLine;
    QByteArray m_bytes;
    int m_begin = 0;    ///< of the current line
    int m_searched = 0; ///< No line feed is between the begin and here.
    bool m_isDropping = false;
};

} // namespace ctl
