#pragma once

#include <map>
#include <string>

#include <QString>

#include "programs/missingfonts/common/fontusage.h"

namespace programs {

/// The table of fonts at the beginning of an RTF document. Names arrive byte by byte, each in its
/// font's encoding.
class RtfFontTable
{
public:
    explicit RtfFontTable(FontUsage &usage) : m_usage(usage) {}

    void beginFont(int number);
    void setCharacterSet(int characterSet) { m_characterSet = characterSet; }
    void setEmbedded() { m_embedded = true; }

    void addByte(unsigned char byte, bool toAlternative);
    void addCharacter(QChar character, bool toAlternative);

    /// The font's name is complete.
    void endFont();

    Family font(int number) const;

private:
    /// A name that is still being read: what is decoded, and the bytes after that.
    struct Name
    {
        QString decoded;
        std::string bytes;
    };

    QString take(Name &name) const;

    FontUsage &m_usage;
    std::map<int, Family> m_fonts;
    int m_number = -1;
    int m_characterSet = 0;
    bool m_embedded = false;
    Name m_name;
    Name m_alternative;
};

} // namespace programs
