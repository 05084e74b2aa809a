#pragma once

#include <array>

#include "programs/missingfonts/common/fontusage.h"
#include "programs/missingfonts/common/textscripts.h"

namespace programs {

/// The fonts that one set of text properties names, one for each kind of character.
struct FontSet
{
    /// In the order of the bits of Script.
    enum Slot : std::size_t {
        Ascii,
        HighAnsi,
        EastAsian,
        Complex,
        Symbol, ///< where none is named, symbols take the HighAnsi font
        Slots
    };

    std::array<Family, Slots> families = {noFamily, noFamily, noFamily, noFamily, noFamily};

    Family &operator[](Slot slot) { return families[slot]; }
    Family operator[](Slot slot) const { return families[slot]; }

    /// Fills what is not named from the properties below.
    void inherit(const FontSet &below)
    {
        for (std::size_t slot = 0; slot < Slots; ++slot) {
            if (families[slot] == noFamily)
                families[slot] = below.families[slot];
        }
    }

    /// Marks the fonts for those kinds of characters as used; @p resolve gives what a theme
    /// reference means.
    template<typename Resolve>
    void use(unsigned scripts, FontUsage &usage, const Resolve &resolve) const
    {
        for (std::size_t slot = 0; slot < Slots; ++slot) {
            if ((scripts & (1U << slot)) == 0)
                continue;
            const bool isUnnamed = slot == Symbol && families[slot] == noFamily;
            usage.use(resolve(families[isUnnamed ? HighAnsi : slot]));
        }
    }
};

static_assert(AsciiScript == 1U << FontSet::Ascii && HighAnsiScript == 1U << FontSet::HighAnsi &&
              EastAsianScript == 1U << FontSet::EastAsian &&
              ComplexScript == 1U << FontSet::Complex && SymbolScript == 1U << FontSet::Symbol);

} // namespace programs
