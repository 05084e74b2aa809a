#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "programs/missingfonts/xml/xmlnames.h"

namespace standin {

/// The prefixes that are bound at one place of a part, and what element names mean there.
class XmlNamespaces
{
public:
    XmlNamespaces();

    /// Binds a prefix (empty: elements without one) until leave(@p depth).
    void bind(std::string_view prefix, std::string_view uri, std::size_t depth);

    /// Forgets what was bound at that depth.
    void leave(std::size_t depth);

    /// Vocabulary::Other for a prefix of no known vocabulary.
    /// @throws DocumentError when the prefix is not bound
    Vocabulary vocabulary(std::string_view prefix) const;

    /// The element of a name as written ("w:rFonts").
    Tag tag(std::string_view qualifiedName);

private:
    struct Binding
    {
        std::string prefix;
        Vocabulary vocabulary;
        std::size_t depth;
    };

    /// The meaning of a name found last; a document has few names, but millions of elements.
    struct Remembered
    {
        std::uint32_t generation = 0;
        std::string name;
        Tag tag = Tag();
    };

    std::vector<Binding> m_bindings;
    std::vector<Remembered> m_remembered;
    // Changes with the bindings, so that nothing is remembered beyond them.
    std::uint32_t m_generation = 1;
};

} // namespace standin
