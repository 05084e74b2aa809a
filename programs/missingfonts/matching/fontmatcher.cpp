#include "programs/missingfonts/matching/fontmatcher.h"

#include <stdexcept>

#include <QByteArray>
#include <QStringList>

#include <fontconfig/fontconfig.h>

namespace programs {

namespace {

constexpr const char *serif = "serif";
constexpr const char *sans = "sans";

struct PatternDestroyer
{
    void operator()(FcPattern *pattern) const { FcPatternDestroy(pattern); }
};
using PatternPointer = std::unique_ptr<FcPattern, PatternDestroyer>;

const FcChar8 *fontconfigString(const QByteArray &text)
{
    return reinterpret_cast<const FcChar8 *>(text.constData());
}

QStringList strings(const FcPattern *pattern, const char *property)
{
    QStringList result;
    FcChar8 *value = nullptr;
    for (int n = 0; FcPatternGetString(pattern, property, n, &value) == FcResultMatch; ++n)
        result.append(QString::fromUtf8(reinterpret_cast<const char *>(value)));
    return result;
}

} // namespace

struct FontMatcher::Font
{
    QStringList families;
    QStringList file;
    int index = 0;

    bool operator==(const Font &other) const
    {
        return !file.isEmpty() && file == other.file && index == other.index;
    }
};

FontMatcher::FontMatcher()
    : m_config(FcInitLoadConfigAndFonts(), [](FcConfig *config) {
          if (config)
              FcConfigDestroy(config);
      })
{
    if (!m_config)
        throw std::runtime_error("the fonts of the machine cannot be looked up");
    m_generalFamiliesDiffer = !(find(QString(), serif) == find(QString(), sans));
}

FontMatcher::Font FontMatcher::find(const QString &family, const char *general) const
{
    const PatternPointer pattern(FcPatternCreate());
    if (!pattern)
        return {};
    if (!family.isEmpty())
        FcPatternAddString(pattern.get(), FC_FAMILY, fontconfigString(family.toUtf8()));
    FcPatternAddString(pattern.get(), FC_FAMILY, fontconfigString(general));
    FcConfigSubstitute(m_config.get(), pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    FcResult result = FcResultNoMatch;
    const PatternPointer found(FcFontMatch(m_config.get(), pattern.get(), &result));
    if (!found)
        return {};
    Font font = {strings(found.get(), FC_FAMILY), strings(found.get(), FC_FILE), 0};
    FcPatternGetInteger(found.get(), FC_INDEX, 0, &font.index);
    return font;
}

FontMatcher::Match FontMatcher::match(const QString &family) const
{
    const Font font = find(family, serif);
    Match match;
    match.family = font.families.value(0);
    const bool isFound = font == find(family, sans);
    if (isFound && font.families.contains(family, Qt::CaseInsensitive))
        match.presence = Presence::Present;
    else if (isFound && m_generalFamiliesDiffer)
        match.presence = Presence::Substituted;
    return match;
}

} // namespace programs
