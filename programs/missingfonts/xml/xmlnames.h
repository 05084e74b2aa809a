#pragma once

#include <cstdint>
#include <string_view>

namespace programs {

/// The XML vocabularies that the readers know, in their transitional and their strict form.
enum class Vocabulary : std::uint8_t {
    None, ///< an attribute without a prefix
    Other,
    Word,
    Drawing,
    Sheet,
    Presentation,
    Chart,
    Math,
    PackageRelationships,
    Compatibility
};

Vocabulary vocabularyOf(std::string_view namespaceUri);

/// The name of an element as a number, so that readers can switch on it. A document may well name
/// an element with the number of another: it could as well have used that other one.
enum class Tag : std::uint64_t {
};

constexpr Tag tagOf(Vocabulary vocabulary, std::string_view localName)
{
    // FNV-1a
    constexpr std::uint64_t prime = 0x100000001B3;
    std::uint64_t hash = (0xCBF29CE484222325 ^ static_cast<std::uint8_t>(vocabulary)) * prime;
    for (const char c : localName)
        hash = (hash ^ static_cast<unsigned char>(c)) * prime;
    return Tag(hash);
}

constexpr Tag wordTag(std::string_view name)
{
    return tagOf(Vocabulary::Word, name);
}

constexpr Tag drawingTag(std::string_view name)
{
    return tagOf(Vocabulary::Drawing, name);
}

constexpr Tag sheetTag(std::string_view name)
{
    return tagOf(Vocabulary::Sheet, name);
}

constexpr Tag presentationTag(std::string_view name)
{
    return tagOf(Vocabulary::Presentation, name);
}

} // namespace programs
