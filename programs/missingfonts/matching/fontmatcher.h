#pragma once

#include <memory>

#include <QString>

struct _FcConfig;

namespace standin {

/// Asks fontconfig for fonts as a renderer does.
class FontMatcher
{
public:
    enum class Presence {
        Present,
        Substituted, ///< another font that fontconfig names for it, such as one of equal widths
        Missing
    };

    struct Match
    {
        Presence presence = Presence::Missing;
        /// The family that text in this font would be drawn with.
        QString family;
    };

    /// Loads the fonts and the configuration of the user.
    /// @throws std::runtime_error when there is no configuration to be had
    FontMatcher();

    /// A family that is there, or that has a substitute, is found whichever general family stands
    /// behind it; a missing one gives way to that.
    Match match(const QString &family) const;

private:
    struct Font;

    Font find(const QString &family, const char *general) const;

    std::shared_ptr<_FcConfig> m_config;
    // Without, the machine has one font only, which answers every question.
    bool m_generalFamiliesDiffer = true;
};

} // namespace standin
