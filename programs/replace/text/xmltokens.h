#pragma once

#include <QByteArray>

namespace programs {

/// A piece of XML: from one "<" to its ">", or the text up to the next.
struct XmlToken
{
    enum class Kind {
        Text,
        Start,
        Empty, ///< a start tag that is its own end
        End,
        Other,   ///< comments, CDATA sections and instructions
        Damaged, ///< not XML, or with a document type
        Nothing, ///< the end of the document
    };

    Kind kind = Kind::Nothing;
    int begin = 0;
    int end = 0;
    /// Of an element, with its prefix.
    QByteArray name;
};

/// The token that begins at @p position.
XmlToken tokenAt(const QByteArray &xml, int position);

} // namespace programs
