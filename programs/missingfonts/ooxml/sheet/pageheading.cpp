#include "programs/missingfonts/ooxml/sheet/pageheading.h"

#include <algorithm>

namespace standin {

namespace {

constexpr std::string_view digits = "0123456789";

/// Reads one heading.
class PageHeading
{
public:
    explicit PageHeading(std::string_view heading) : m_rest(heading) {}

    HeadingFonts read()
    {
        while (!m_rest.empty()) {
            const char c = take();
            if (c != '&')
                useFont(c);
            else if (!m_rest.empty())
                takeCode(take());
        }
        return m_fonts;
    }

private:
    char take()
    {
        const char c = m_rest.front();
        m_rest.remove_prefix(1);
        return c;
    }

    void takeCode(char code)
    {
        constexpr std::string_view sections = "LCR";
        constexpr std::string_view fields = "&PNDTFAZ";
        constexpr std::size_t colorCharacters = 6;
        if (code == '"')
            takeFont();
        else if (code == 'K')
            m_rest.remove_prefix(std::min(colorCharacters, m_rest.size()));
        else if (digits.find(code) != digits.npos) // a size, of which digits may follow
            m_rest.remove_prefix(std::min(m_rest.find_first_not_of(digits), m_rest.size()));
        else if (sections.find(code) != sections.npos)
            m_family.clear();
        else if (fields.find(code) != fields.npos)
            useFont(code);
    }

    void takeFont()
    {
        const std::string_view font = m_rest.substr(0, m_rest.find('"'));
        m_rest.remove_prefix(std::min(font.size() + 1, m_rest.size()));
        m_family = font.substr(0, font.find(','));
        if (m_family == "-")
            m_family.clear();
    }

    void useFont(char c)
    {
        constexpr std::string_view blanks = " \t\r\n";
        if (blanks.find(c) != blanks.npos)
            return;
        if (m_family.empty())
            m_fonts.usesWorkbookFont = true;
        else
            m_fonts.families.insert(m_family);
    }

    std::string_view m_rest;
    std::string m_family; ///< empty for the workbook's own
    HeadingFonts m_fonts;
};

} // namespace

HeadingFonts headingFonts(std::string_view heading)
{
    return PageHeading(heading).read();
}

} // namespace standin
