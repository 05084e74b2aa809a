#pragma once

#include <vector>

#include "programs/missingfonts/rtf/rtffonttable.h"
#include "programs/missingfonts/rtf/rtfscanner.h"

class QIODevice;

namespace standin {

/// Reads the fonts of an RTF document.
class RtfDocument : public RtfHandler
{
public:
    explicit RtfDocument(FontUsage &usage) : m_usage(usage), m_table(usage) {}

    /// @throws DocumentError when the document is malformed, too deeply nested or ends too early
    void read(QIODevice &file);

    void beginGroup() override;
    void endGroup() override;
    void word(std::string_view word, bool hasNumber, int number) override;
    void symbol(char symbol) override;
    void byte(unsigned char byte) override;

private:
    enum class Destination {
        Text,
        FontTable,
        FontAlternative,
        Skipped
    };

    /// Which of a text's fonts the next "\af" names.
    enum class Association {
        Latin,
        EastAsian,
        Complex
    };

    struct Group
    {
        Destination destination = Destination::Text;
        /// What a Unicode version of this group's text is for.
        Destination unicodeDestination = Destination::Text;
        Association association = Association::Latin;
        int font = 0;
        int eastAsianFont = -1;
        int complexFont = -1;
        int replacementBytes = 1;
        bool isOptional = false; ///< its first word follows a "\*"
    };

    bool beginDestination(std::string_view word);
    void formattingWord(std::string_view word, bool hasNumber, int number);
    void tableWord(std::string_view word, int number);
    void unicodeCharacter(int number);
    void useFont(char32_t character);
    bool skipReplacement();

    FontUsage &m_usage;
    RtfFontTable m_table;
    std::vector<Group> m_groups;
    int m_defaultFont = 0;
    int m_defaultEastAsianFont = -1;
    int m_lastUsedFont = -1;
    // What is left of the text for readers that know no Unicode.
    int m_replacementLeft = 0;
    bool m_ended = false;
};

} // namespace standin
