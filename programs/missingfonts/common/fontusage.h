#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <QStringList>

namespace programs {

/// A number for the name of a font family, valid within one FontUsage.
using Family = int;

/// No font is named.
constexpr Family noFamily = -1;

/// The theme fonts that drawing text can refer to; they have the same numbers in every FontUsage.
enum ThemeReference : Family {
    MajorLatin,
    MajorEastAsian,
    MajorComplex,
    MinorLatin,
    MinorEastAsian,
    MinorComplex,
    ThemeReferences
};

/// A family that some text of a document uses.
struct UsedFamily
{
    /// As the document writes it; several names separated by ";" are tried in turn.
    QString name;
    /// Other names of the same font that the document gives, separated by "," or ";"; may be empty.
    QString alternative;
};

/// The font families that a document names, and which of them its text uses.
class FontUsage
{
public:
    FontUsage();

    /// The number of a name (UTF-8); noFamily for an empty name.
    /// @throws DocumentError when the document names unreasonably many fonts
    Family family(std::string_view name);

    /// Marks the family as used by some text; ignores noFamily.
    void use(Family family)
    {
        if (family != noFamily)
            m_families[static_cast<std::size_t>(family)].used = true;
    }

    /// The font is embedded in the document, so it cannot be missing.
    void setEmbedded(Family family);

    /// Stores another name of the family; ignores an empty one.
    void setAlternative(Family family, const std::string &name);

    /// The used families without the embedded ones, in the order of their first mention.
    /// @throws DocumentError when there are unreasonably many
    std::vector<UsedFamily> used() const;

private:
    struct Entry
    {
        std::string name;
        std::string alternative;
        bool used = false;
        bool embedded = false;
    };

    // A deque: the keys of the index point into its elements.
    std::deque<Entry> m_families;
    std::unordered_map<std::string_view, Family> m_index;
};

} // namespace programs
