#include "programs/missingfonts/rtf/rtfdocument.h"

#include <algorithm>
#include <array>
#include <vector>

#include <QByteArray>
#include <QIODevice>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/common/textscripts.h"
#include "programs/missingfonts/rtf/rtffonttable.h"
#include "programs/missingfonts/rtf/rtfscanner.h"

namespace programs {

namespace {

constexpr int blockBytes = 65536;

/// Destinations that hold none of the document's text. Sorted.
constexpr std::array<std::string_view, 22> skippedDestinations = {
    "atnauthor",    "atnid",      "bkmkend", "bkmkstart", "colortbl", "datafield",
    "datastore",    "filetbl",    "fldinst", "fontemb",   "info",     "listpicture",
    "nonesttables", "nonshppict", "objdata", "panose",    "pict",     "private",
    "sp",           "stylesheet", "tc",      "xe"};

/// Optional destinations that do hold text. Sorted.
constexpr std::array<std::string_view, 8> optionalText = {
    "annotation", "do", "falt", "footnote", "moMath", "moMathPara", "shpinst", "ud"};

/// Words that stand for a character. Sorted.
constexpr std::array<std::string_view, 8> characterWords = {
    "bullet", "chpgn", "emdash", "endash", "ldblquote", "lquote", "rdblquote", "rquote"};

template<std::size_t size>
bool contains(const std::array<std::string_view, size> &sorted, std::string_view word)
{
    return std::binary_search(sorted.begin(), sorted.end(), word);
}

/// Reads the fonts of an RTF document.
class RtfDocument : public RtfScanner
{
public:
    explicit RtfDocument(FontUsage &usage) : m_usage(usage), m_table(usage) {}

    /// @throws DocumentError when the document is malformed, too deeply nested or ends too early
    void read(QIODevice &file)
    {
        QByteArray block(blockBytes, Qt::Uninitialized);
        while (!m_ended) {
            const qint64 size = file.read(block.data(), block.size());
            if (size < 0)
                throw DocumentError("the document cannot be read: " +
                                    file.errorString().toStdString());
            if (size == 0)
                throw DocumentError("the document ends too early");
            feed(std::string_view(block.constData(), static_cast<std::size_t>(size)));
        }
    }

private:
    void beginGroup() override
    {
        m_replacementLeft = 0;
        if (m_ended)
            return;
        if (m_groups.size() >= limits::rtfDepth)
            throw DocumentError("the document's groups are nested too deeply");
        Group group = m_groups.empty() ? Group() : m_groups.back();
        group.isOptional = false;
        m_groups.push_back(group);
    }

    void endGroup() override
    {
        m_replacementLeft = 0;
        if (m_ended)
            return;
        if (m_groups.empty())
            throw DocumentError("the document's groups do not match");
        const Destination ended = m_groups.back().destination;
        m_groups.pop_back();
        m_ended = m_groups.empty();
        const bool leavesTable = m_ended || m_groups.back().destination != Destination::FontTable;
        if (ended == Destination::FontTable && leavesTable)
            m_table.endFont();
    }

    void word(std::string_view word, bool hasNumber, int number) override
    {
        if (m_ended || m_groups.empty() || skipReplacement())
            return;
        if (beginDestination(word))
            return;
        const Group &group = m_groups.back();
        if (word == "u" && hasNumber)
            unicodeCharacter(number);
        else if (word == "uc")
            m_groups.back().replacementBytes = std::clamp(number, 0, 1000);
        else if (group.destination == Destination::FontTable)
            tableWord(word, number);
        else if (group.destination == Destination::Text)
            formattingWord(word, hasNumber, number);
    }

    void symbol(char symbol) override
    {
        if (m_ended || m_groups.empty() || skipReplacement())
            return;
        if (symbol == '*')
            m_groups.back().isOptional = true;
        else if (symbol == '~' || symbol == '_')
            useFont('-');
    }

    void byte(unsigned char byte) override
    {
        if (m_ended || skipReplacement())
            return;
        if (m_groups.empty()) {
            if (byte == ' ' || byte == '\t')
                return;
            throw DocumentError("the document has text outside of its groups");
        }
        switch (m_groups.back().destination) {
        case Destination::Text:
            useFont('-');
            break;
        case Destination::FontTable:
            if (byte == ';')
                m_table.endFont();
            else
                m_table.addByte(byte, false);
            break;
        case Destination::FontAlternative:
            m_table.addByte(byte, true);
            break;
        case Destination::Skipped:
            break;
        }
    }

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
        /// The destination of the Unicode version of this group's text.
        Destination unicodeDestination = Destination::Text;
        Association association = Association::Latin;
        int font = 0;
        int eastAsianFont = -1;
        int complexFont = -1;
        int replacementBytes = 1;
        bool isOptional = false; ///< its first word follows a "\*"
    };

    bool beginDestination(std::string_view word)
    {
        Group &group = m_groups.back();
        const bool isOptional = group.isOptional;
        group.isOptional = false;
        if (word == "fontemb" && group.destination == Destination::FontTable)
            m_table.setEmbedded();
        if (group.destination == Destination::Skipped && word != "ud" && word != "upr")
            return false;
        if (word == "ud") {
            group.destination = group.unicodeDestination;
        } else if (word == "upr") {
            group.unicodeDestination = group.destination;
            group.destination = Destination::Skipped;
        } else if (contains(skippedDestinations, word) ||
                   (isOptional && !contains(optionalText, word))) {
            group.destination = Destination::Skipped;
        } else if (word == "fonttbl") {
            group.destination = Destination::FontTable;
        } else if (word == "falt") {
            group.destination = Destination::FontAlternative;
        } else {
            return false;
        }
        return true;
    }

    void formattingWord(std::string_view word, bool hasNumber, int number)
    {
        Group &group = m_groups.back();
        if (word == "f" && hasNumber) {
            group.font = number;
        } else if (word == "af" && hasNumber) {
            if (group.association == Association::EastAsian)
                group.eastAsianFont = number;
            else if (group.association == Association::Complex)
                group.complexFont = number;
        } else if (word == "loch" || word == "hich" || word == "ltrch") {
            group.association = Association::Latin;
        } else if (word == "dbch") {
            group.association = Association::EastAsian;
        } else if (word == "rtlch") {
            group.association = Association::Complex;
        } else if (word == "plain") {
            group.font = m_defaultFont;
            group.eastAsianFont = m_defaultEastAsianFont;
            group.complexFont = -1;
            group.association = Association::Latin;
        } else if (word == "deff") {
            m_defaultFont = number;
            group.font = number;
        } else if (word == "stshfdbch") {
            m_defaultEastAsianFont = number;
            group.eastAsianFont = number;
        } else if (contains(characterWords, word)) {
            useFont('-');
        }
    }

    void tableWord(std::string_view word, int number)
    {
        if (word == "f")
            m_table.beginFont(number);
        else if (word == "fcharset")
            m_table.setCharacterSet(number);
    }

    void unicodeCharacter(int number)
    {
        const auto unit = static_cast<char16_t>(number);
        m_replacementLeft = m_groups.back().replacementBytes;
        switch (m_groups.back().destination) {
        case Destination::Text:
            // RTF writes characters beyond U+FFFF as two surrogates.
            useFont(unit >= 0xD800 && unit < 0xE000 ? char32_t(0x20000) : char32_t(unit));
            break;
        case Destination::FontTable:
        case Destination::FontAlternative:
            m_table.addCharacter(QChar(unit),
                                 m_groups.back().destination == Destination::FontAlternative);
            break;
        case Destination::Skipped:
            break;
        }
    }

    void useFont(char32_t character)
    {
        const Group &group = m_groups.back();
        if (group.destination != Destination::Text)
            return;
        int font = group.font;
        const Script script = scriptOf(character);
        if (script == EastAsianScript && group.association != Association::EastAsian &&
            group.eastAsianFont >= 0)
            font = group.eastAsianFont;
        else if (script == ComplexScript && group.association != Association::Complex &&
                 group.complexFont >= 0)
            font = group.complexFont;
        if (font == m_lastUsedFont)
            return;
        m_usage.use(m_table.font(font));
        m_lastUsedFont = font;
    }

    bool skipReplacement()
    {
        if (m_replacementLeft == 0)
            return false;
        --m_replacementLeft;
        return true;
    }

    FontUsage &m_usage;
    RtfFontTable m_table;
    std::vector<Group> m_groups;
    int m_defaultFont = 0;
    int m_defaultEastAsianFont = -1;
    int m_lastUsedFont = -1;
    // Bytes left of the replacement for readers without Unicode.
    int m_replacementLeft = 0;
    bool m_ended = false;
};

} // namespace

void readRtfDocument(QIODevice &file, FontUsage &usage)
{
    RtfDocument(usage).read(file);
}

} // namespace programs
