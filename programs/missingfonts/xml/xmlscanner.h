#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "programs/missingfonts/xml/xmlelement.h"
#include "programs/missingfonts/xml/xmlnamespaces.h"

namespace programs {

/// Reads the XML of a part block by block, in memory that does not grow with the part.
///
/// Expat alone takes longer over a big part than this scanner with all that follows it, and Qt's
/// reader four times as long. This one accepts only what such parts may contain: UTF-8, no document
/// type declaration, no entities of the document's own. It leaves out the fallbacks of alternate
/// content: the first choice names the same fonts.
class XmlScanner
{
public:
    explicit XmlScanner(XmlHandler &handler);

    /// Takes the next block.
    /// @throws DocumentError when the part is not well formed or exceeds a limit
    void feed(const char *data, std::size_t size);

    /// The part has ended.
    /// @throws DocumentError when it should not have
    void finish();

private:
    struct Open
    {
        std::size_t nameStart; ///< in m_openNames
        Tag tag;
        bool bindsNamespaces;
    };

    enum class Progress {
        Done,
        NeedsMore
    };

    void checkEncoding();
    void scan();
    Progress scanToken();
    void scanText();
    Progress skipTo(std::string_view end);
    Progress scanCharacterData();
    Progress scanEndTag();
    Progress scanStartTag();
    Progress scanAttributes();
    Progress scanAttribute();
    void openElement(std::string_view name);
    void closeElement();
    void report(std::string_view text, bool literal);

    bool isSkipping() const { return m_skipFrom != 0; }

    XmlHandler &m_handler;
    XmlNamespaces m_namespaces;
    std::string m_buffer;
    std::size_t m_position = 0; ///< in m_buffer
    std::string m_resolved;
    std::string m_openNames;
    std::vector<Open> m_open;
    std::vector<XmlElement::Attribute> m_attributes;
    // Depth of the element whose content is left out, 0 for none.
    std::size_t m_skipFrom = 0;
    bool m_started = false;
    bool m_sawRoot = false;
};

} // namespace programs
