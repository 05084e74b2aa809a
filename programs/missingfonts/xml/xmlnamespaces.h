#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/xml/xmlnames.h"

namespace programs {

/// The prefixes that are bound at one place of a part, and what element names mean there.
class XmlNamespaces
{
public:
    /// Binds a prefix (empty: elements without one) until leave(@p depth).
    void bind(std::string_view prefix, std::string_view uri, std::size_t depth)
    {
        if (m_bindings.size() >= limits::xmlNamespaceBindings)
            throw DocumentError("a part declares too many XML namespaces");
        m_bindings.push_back({std::string(prefix), vocabularyOf(uri), depth});
        ++m_generation;
    }

    /// Forgets what was bound at that depth.
    void leave(std::size_t depth)
    {
        while (!m_bindings.empty() && m_bindings.back().depth >= depth) {
            m_bindings.pop_back();
            ++m_generation;
        }
    }

    /// Vocabulary::Other for a prefix of no known vocabulary.
    /// @throws DocumentError when the prefix is not bound
    Vocabulary vocabulary(std::string_view prefix) const
    {
        for (auto binding = m_bindings.rbegin(); binding != m_bindings.rend(); ++binding) {
            if (binding->prefix == prefix)
                return binding->vocabulary;
        }
        if (!prefix.empty() && prefix != "xml")
            throw DocumentError("a part uses an XML prefix that it does not declare");
        return Vocabulary::Other;
    }

    /// The element of a name as written ("w:rFonts").
    Tag tag(std::string_view qualifiedName)
    {
        Remembered &remembered = m_remembered[slotOf(qualifiedName)];
        if (remembered.generation == m_generation && remembered.name == qualifiedName)
            return remembered.tag;
        const std::size_t colon = qualifiedName.find(':');
        const bool prefixed = colon != std::string_view::npos;
        const Tag tag =
            tagOf(vocabulary(prefixed ? qualifiedName.substr(0, colon) : std::string_view()),
                  prefixed ? qualifiedName.substr(colon + 1) : qualifiedName);
        if (qualifiedName.size() <= rememberedNameBytes)
            remembered = {m_generation, std::string(qualifiedName), tag};
        return tag;
    }

private:
    static constexpr std::size_t rememberedNames = 512;
    static constexpr std::size_t rememberedNameBytes = 64;

    struct Binding
    {
        std::string prefix;
        Vocabulary vocabulary;
        std::size_t depth;
    };

    /// The meaning of a name looked up last: a document has few names, but millions of elements.
    struct Remembered
    {
        std::uint32_t generation = 0;
        std::string name;
        Tag tag = Tag();
    };

    static std::size_t slotOf(std::string_view name)
    {
        return static_cast<std::size_t>(tagOf(Vocabulary::None, name)) % rememberedNames;
    }

    std::vector<Binding> m_bindings;
    std::vector<Remembered> m_remembered{rememberedNames};
    // Changes with the bindings: what was remembered under others no longer holds.
    std::uint32_t m_generation = 1;
};

} // namespace programs
