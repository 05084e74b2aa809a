#include "programs/checktool/fonts/fontconfiguration.h"

#include <QFileInfo>

#include <fontconfig/fontconfig.h>

namespace programs {

namespace {

struct PatternDestroyer
{
    void operator()(FcPattern *pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, PatternDestroyer>;

struct CacheUnloader
{
    void operator()(FcCache *cache) const { FcDirCacheUnload(cache); }
};

struct FontSetDestroyer
{
    void operator()(FcFontSet *set) const { FcFontSetDestroy(set); }
};

QString toText(const FcChar8 *text)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(text));
}

void add(FcPattern *pattern, const char *property, const QString &value)
{
    FcPatternAddString(pattern, property,
                       reinterpret_cast<const FcChar8 *>(value.toUtf8().constData()));
}

/// Takes ownership of @p list.
QStringList toTexts(FcStrList *list)
{
    QStringList texts;
    if (!list)
        return texts;
    while (const FcChar8 *text = FcStrListNext(list))
        texts.append(toText(text));
    FcStrListDone(list);
    return texts;
}

QString firstFamily(const FcPattern *pattern)
{
    FcChar8 *family = nullptr;
    return FcPatternGetString(pattern, FC_FAMILY, 0, &family) == FcResultMatch ? toText(family)
                                                                               : QString();
}

QString firstListed(FcConfig *config, const FcPattern *wanted)
{
    FcObjectSet *properties = FcObjectSetBuild(FC_FAMILY, nullptr);
    const std::unique_ptr<FcFontSet, FontSetDestroyer> found(
        FcFontList(config, const_cast<FcPattern *>(wanted), properties));
    FcObjectSetDestroy(properties);
    return found && found->nfont > 0 ? firstFamily(found->fonts[0]) : QString();
}

} // namespace

FontConfiguration::FontConfiguration()
    : m_config(FcInitLoadConfig(), [](FcConfig *config) {
          if (config)
              FcConfigDestroy(config);
      })
{
}

QStringList FontConfiguration::directories() const
{
    return toTexts(FcConfigGetFontDirs(m_config.get()));
}

QStringList FontConfiguration::cacheDirectories() const
{
    return toTexts(FcConfigGetCacheDirs(m_config.get()));
}

QStringList FontConfiguration::directoriesWithoutCache() const
{
    QStringList stale;
    QStringList waiting = directories();
    while (!waiting.isEmpty()) {
        const QString directory = waiting.takeFirst();
        if (!QFileInfo(directory).isDir())
            continue;
        const std::unique_ptr<FcCache, CacheUnloader> cache(
            FcDirCacheLoad(reinterpret_cast<const FcChar8 *>(directory.toUtf8().constData()),
                           m_config.get(), nullptr));
        if (!cache)
            stale.append(directory);
        // A change in a subdirectory does not make the cache of its parent stale.
        for (int n = 0; cache && n < FcCacheNumSubdir(cache.get()); ++n)
            waiting.append(toText(FcCacheSubdir(cache.get(), n)));
    }
    return stale;
}

void FontConfiguration::loadFonts()
{
    FcConfigBuildFonts(m_config.get());
}

int FontConfiguration::fontCount() const
{
    const FcFontSet *fonts = FcConfigGetFonts(m_config.get(), FcSetSystem);
    return fonts ? fonts->nfont : 0;
}

QString FontConfiguration::match(const QString &family) const
{
    const Pattern pattern(FcPatternCreate());
    add(pattern.get(), FC_FAMILY, family);
    return bestMatch(pattern.get());
}

QString FontConfiguration::bestMatch(_FcPattern *pattern) const
{
    FcConfigSubstitute(m_config.get(), pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult result = FcResultNoMatch;
    const Pattern found(FcFontMatch(m_config.get(), pattern, &result));
    return found ? firstFamily(found.get()) : QString();
}

QString FontConfiguration::familyForLanguage(const QString &language) const
{
    const Pattern pattern(FcPatternCreate());
    add(pattern.get(), FC_LANG, language);
    return firstListed(m_config.get(), pattern.get()).isEmpty() ? QString()
                                                                : bestMatch(pattern.get());
}

bool FontConfiguration::hasFamily(const QString &family) const
{
    const Pattern pattern(FcPatternCreate());
    add(pattern.get(), FC_FAMILY, family);
    return !firstListed(m_config.get(), pattern.get()).isEmpty();
}

} // namespace programs
