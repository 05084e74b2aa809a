#pragma once

#include <QStringList>

#include <memory>

struct _FcConfig;
struct _FcPattern;

namespace standin {

/// The fonts and the fontconfig settings of the user.
class FontConfiguration
{
public:
    /// Reads the settings; fonts are looked for by loadFonts() only.
    FontConfiguration();

    /// Whether there are settings that could be read.
    bool isValid() const { return m_config != nullptr; }

    /// Directories in which fonts are looked for; after loadFonts() with those below them.
    QStringList directories() const;

    /// Directories for lists of what fonts are where, in the order in which they are tried.
    QStringList cacheDirectories() const;

    /// Directories whose list is out of date or missing, and so made again by each program; of
    /// those below such a directory nothing is known.
    QStringList directoriesWithoutCache() const;

    /// Reads the fonts, and writes the lists that are out of date where that is possible.
    void loadFonts();

    /// The number of fonts; after loadFonts().
    int fontCount() const;

    /// The family that text in @p family is drawn with; empty when there are no fonts.
    QString match(const QString &family) const;

    /// The family in which texts in that language are drawn, when it has what they need ("zh-cn");
    /// empty when there is none.
    QString familyForLanguage(const QString &language) const;

    /// Whether some font has a family of that name, in whatever case.
    bool hasFamily(const QString &family) const;

private:
    QString bestMatch(_FcPattern *pattern) const;

    std::shared_ptr<_FcConfig> m_config;
};

} // namespace standin
