#pragma once

#include <QStringList>

#include <memory>

struct _FcConfig;
struct _FcPattern;

namespace programs {

/// The user's fonts and fontconfig settings.
class FontConfiguration
{
public:
    /// Reads the settings, but no fonts: loadFonts() does.
    FontConfiguration();

    /// Whether the settings could be read.
    bool isValid() const { return m_config != nullptr; }

    /// Font directories; their subdirectories too after loadFonts().
    QStringList directories() const;

    /// Cache directories, in the order in which they are tried.
    QStringList cacheDirectories() const;

    /// Directories whose cache is stale or missing, so that every program scans them again. Does
    /// not descend into such a directory.
    QStringList directoriesWithoutCache() const;

    /// Reads the fonts and renews stale caches where it can.
    void loadFonts();

    /// The number of fonts. Needs loadFonts().
    int fontCount() const;

    /// The family that replaces @p family; empty when there are no fonts.
    QString match(const QString &family) const;

    /// The family that draws @p language, such as "zh-cn"; empty when no font has all its letters.
    QString familyForLanguage(const QString &language) const;

    /// Whether a font family of that name exists; ignores case.
    bool hasFamily(const QString &family) const;

private:
    QString bestMatch(_FcPattern *pattern) const;

    std::shared_ptr<_FcConfig> m_config;
};

} // namespace programs
