#include "programs/missingfonts/ooxml/sheet/workbook.h"

#include <algorithm>

namespace programs {

namespace {

constexpr std::string_view digits = "0123456789";

/// Reads a heading as a spreadsheet writes it: text with codes, of which &"Family,Style" begins
/// another font.
class PageHeading
{
public:
    PageHeading(std::string_view heading, Workbook &workbook)
        : m_rest(heading), m_workbook(workbook)
    {
    }

    void read()
    {
        while (!m_rest.empty()) {
            const char c = take();
            if (c != '&')
                useFont(c);
            else if (!m_rest.empty())
                takeCode(take());
        }
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
        else if (digits.find(code) != digits.npos) // a font size
            m_rest.remove_prefix(std::min(m_rest.find_first_not_of(digits), m_rest.size()));
        else if (sections.find(code) != sections.npos)
            m_family = {};
        else if (fields.find(code) != fields.npos)
            useFont(code);
    }

    void takeFont()
    {
        const std::string_view font = m_rest.substr(0, m_rest.find('"'));
        m_rest.remove_prefix(std::min(font.size() + 1, m_rest.size()));
        m_family = font.substr(0, font.find(','));
        if (m_family == "-")
            m_family = {};
    }

    void useFont(char c)
    {
        constexpr std::string_view blanks = " \t\r\n";
        if (blanks.find(c) != blanks.npos)
            return;
        if (m_family.empty())
            m_workbook.useFormat(0);
        else
            m_workbook.usage.use(m_workbook.usage.family(m_family));
    }

    std::string_view m_rest;
    Workbook &m_workbook;
    std::string_view m_family; ///< empty for the workbook's own
};

} // namespace

void Workbook::useHeading(std::string_view heading)
{
    PageHeading(heading, *this).read();
}

void Workbook::finish()
{
    for (const std::uint32_t number : usedFontNumbers)
        used.insert(styles.fontByNumber(number));
    for (const SheetFont &font : used)
        usage.use(font.resolved(theme));
}

} // namespace programs
