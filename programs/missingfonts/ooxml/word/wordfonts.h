#pragma once

#include <array>

#include "programs/missingfonts/common/fontusage.h"
#include "programs/missingfonts/common/textscripts.h"

namespace standin {

class XmlElement;

/// The fonts that one set of run properties names, one for each kind of characters.
struct WordFonts
{
    enum Slot : std::size_t {
        Ascii,
        HighAnsi,
        EastAsian,
        Complex,
        Slots
    };

    std::array<Family, Slots> families = {noFamily, noFamily, noFamily, noFamily};

    /// Takes over what a w:rFonts element says.
    void read(const XmlElement &element, FontUsage &usage);

    /// Fills what is not named from the properties below.
    void inherit(const WordFonts &below);

    /// Notes the fonts of those kinds of characters as used; @p resolve gives what a theme
    /// reference means.
    template<typename Resolve>
    void use(unsigned scripts, FontUsage &usage, const Resolve &resolve) const
    {
        if ((scripts & SymbolScript) != 0)
            scripts |= HighAnsiScript;
        for (std::size_t slot = 0; slot < Slots; ++slot) {
            if ((scripts & (1U << slot)) != 0)
                usage.use(resolve(families[slot]));
        }
    }
};

static_assert(AsciiScript == 1U << WordFonts::Ascii);
static_assert(HighAnsiScript == 1U << WordFonts::HighAnsi);
static_assert(EastAsianScript == 1U << WordFonts::EastAsian);
static_assert(ComplexScript == 1U << WordFonts::Complex);

} // namespace standin
