#include "programs/missingfonts/common/fontusage.h"

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"

namespace programs {

namespace {

constexpr const char *themeReferenceNames[ThemeReferences] = {"+mj-lt", "+mj-ea", "+mj-cs",
                                                              "+mn-lt", "+mn-ea", "+mn-cs"};

/// "@" marks the variant of a font for vertical writing.
std::string_view trimmed(std::string_view name)
{
    constexpr std::string_view blanks = " \t\r\n";
    while (!name.empty() && (name.front() == '@' || blanks.find(name.front()) != blanks.npos))
        name.remove_prefix(1);
    while (!name.empty() && blanks.find(name.back()) != blanks.npos)
        name.remove_suffix(1);
    return name;
}

} // namespace

FontUsage::FontUsage()
{
    for (const char *name : themeReferenceNames)
        family(name);
}

Family FontUsage::family(std::string_view name)
{
    name = trimmed(name);
    if (name.empty())
        return noFamily;
    const auto known = m_index.find(name);
    if (known != m_index.end())
        return known->second;
    if (m_families.size() >= limits::families || name.size() > limits::familyNameBytes)
        throw DocumentError("the document names too many fonts, or one with too long a name");
    const auto number = static_cast<Family>(m_families.size());
    m_families.push_back({std::string(name), {}, false, false});
    m_index.emplace(m_families.back().name, number);
    return number;
}

void FontUsage::setEmbedded(Family family)
{
    if (family != noFamily)
        m_families[static_cast<std::size_t>(family)].embedded = true;
}

void FontUsage::setAlternative(Family family, const std::string &name)
{
    if (family != noFamily && !name.empty() && name.size() <= limits::familyNameBytes)
        m_families[static_cast<std::size_t>(family)].alternative = name;
}

std::vector<UsedFamily> FontUsage::used() const
{
    std::vector<UsedFamily> result;
    for (std::size_t number = ThemeReferences; number < m_families.size(); ++number) {
        const Entry &entry = m_families[number];
        if (!entry.used || entry.embedded)
            continue;
        if (result.size() == limits::usedFamilies)
            throw DocumentError("the document sets text in too many fonts");
        result.push_back(
            {QString::fromStdString(entry.name), QString::fromStdString(entry.alternative)});
    }
    return result;
}

} // namespace programs
