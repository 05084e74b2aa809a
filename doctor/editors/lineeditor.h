#pragma once

#include "doctor/editors/keyeditor.h"

namespace doctor {

/// Which line of a text is meant: the first that fits.
struct LineQuery
{
    enum class Kind {
        Whole,   ///< the line is the text
        Part,    ///< the text stands in the line
        Pattern, ///< the text is a regular expression that fits somewhere in the line
    };

    Kind kind = Kind::Whole;
    QString text;
};

/// The line, its text without line end; nothing if none fits. A problem if the pattern or the
/// content cannot be used or the search takes too long.
struct FoundLine
{
    std::optional<FoundKey> line;
    QString problem;
};

/// A line ends with "\n" or "\r\n"; bytes that are not UTF-8 fit no text. Content up to 64 MiB.
/// However a pattern backtracks, a search is given up after a few seconds.
FoundLine findLine(const QByteArray &content, const LineQuery &query);
/// Gives the line that findLine() finds another text, which has no line end. The line keeps its
/// own. The content itself if no line fits.
EditedContent replaceLine(const QByteArray &content, const LineQuery &query, const QString &text);
/// Removes the line that findLine() finds, with its line end.
EditedContent removeLine(const QByteArray &content, const LineQuery &query);

} // namespace doctor
