#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace programs {

/// Stands for what is no text: a tab, a picture, a note's mark. No search finds it.
constexpr QChar separator(0xfffc);

/// The text of a paragraph without its formatting, and where each character is in the XML.
struct Paragraph
{
    /// A character's bytes, and behind which byte the tag's name ends whose element it is in.
    struct Place
    {
        int begin = 0;
        int end = 0;
        int element = 0;
    };

    QString text;
    QVector<Place> places;

    void addSeparator(int position);
    /// False if the XML has no such text. @p collapses: spaces in a row are one.
    bool add(const QByteArray &xml, int begin, int end, int element, bool collapses);
};

} // namespace programs
