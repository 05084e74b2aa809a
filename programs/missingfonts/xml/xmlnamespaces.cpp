#include "programs/missingfonts/xml/xmlnamespaces.h"

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"

namespace standin {

namespace {

constexpr std::size_t rememberedNames = 512;
constexpr std::size_t rememberedNameBytes = 64;

std::size_t slotOf(std::string_view name)
{
    std::uint32_t hash = 2166136261U;
    for (const char c : name)
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    return hash % rememberedNames;
}

} // namespace

XmlNamespaces::XmlNamespaces() : m_remembered(rememberedNames) {}

void XmlNamespaces::bind(std::string_view prefix, std::string_view uri, std::size_t depth)
{
    if (m_bindings.size() >= limits::xmlNamespaceBindings)
        throw DocumentError("a part declares too many XML namespaces");
    m_bindings.push_back({std::string(prefix), vocabularyOf(uri), depth});
    ++m_generation;
}

void XmlNamespaces::leave(std::size_t depth)
{
    while (!m_bindings.empty() && m_bindings.back().depth >= depth) {
        m_bindings.pop_back();
        ++m_generation;
    }
}

Vocabulary XmlNamespaces::vocabulary(std::string_view prefix) const
{
    for (auto binding = m_bindings.rbegin(); binding != m_bindings.rend(); ++binding) {
        if (binding->prefix == prefix)
            return binding->vocabulary;
    }
    if (!prefix.empty() && prefix != "xml")
        throw DocumentError("a part uses an XML prefix that it does not declare");
    return Vocabulary::Other;
}

Tag XmlNamespaces::tag(std::string_view qualifiedName)
{
    Remembered &remembered = m_remembered[slotOf(qualifiedName)];
    if (remembered.generation == m_generation && remembered.name == qualifiedName)
        return remembered.tag;
    const std::size_t colon = qualifiedName.find(':');
    const bool prefixed = colon != std::string_view::npos;
    const Tag tag =
        tagOf(vocabulary(prefixed ? qualifiedName.substr(0, colon) : std::string_view()),
              prefixed ? qualifiedName.substr(colon + 1) : qualifiedName);
    if (qualifiedName.size() <= rememberedNameBytes) {
        remembered.generation = m_generation;
        remembered.name.assign(qualifiedName);
        remembered.tag = tag;
    }
    return tag;
}

} // namespace standin
