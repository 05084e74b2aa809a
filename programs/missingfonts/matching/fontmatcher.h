#pragma once

#include <memory>

#include <QString>

struct _FcConfig;

namespace programs {

/// Looks fonts up with fontconfig, as a renderer does.
class FontMatcher
{
public:
    enum class Presence {
        Present,
        Substituted, ///< fontconfig names another font for it, such as one of equal widths
        Missing
    };

    struct Match
    {
        Presence presence = Presence::Missing;
        /// The family that text in this font would be drawn with.
        QString family;
    };

    /// Loads the fonts and the configuration of the user.
    /// @throws std::runtime_error when there is no configuration
    FontMatcher();

    /// Looks the family up with "serif" and with "sans" as the fallback: only a missing family
    /// gives two different fonts.
    Match match(const QString &family) const;

private:
    struct Font;

    Font find(const QString &family, const char *general) const;

    std::shared_ptr<_FcConfig> m_config;
    // False when the machine has a single font, which matches everything.
    bool m_generalFamiliesDiffer = true;
};

} // namespace programs
