#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <array>

#include "programs/checktool/checks/checks.h"
#include "programs/checktool/fonts/fontconfiguration.h"
#include "programs/missingfonts/matching/familyaliases.h"
#include "programs/missingfonts/matching/fontmatcher.h"
#include "texts/texts.h"

namespace programs {

namespace {

struct Language
{
    const char *code;
    const char *package;
};

constexpr Language chinese = {"zh-cn", "fonts-noto-cjk"};
constexpr std::array<Language, 2> otherLanguages = {
    {{"ja", "fonts-noto-cjk"}, {"ko", "fonts-noto-cjk"}}};

/// The fonts of most documents.
const std::array<const char *, 7> usualFamilies = {
    "Times New Roman", "Arial", "Courier New", "Calibri", "Cambria", "SimSun", "SimHei"};

QString languageName(const Language &language)
{
    const QByteArray code = language.code;
    if (code == "ja")
        return texts::tr("Japanese");
    return code == "ko" ? texts::tr("Korean") : texts::tr("Chinese");
}

QString installFonts(const char *package)
{
    return texts::tr("Install a font package, such as %1.").arg(QString::fromLatin1(package));
}

void checkDirectories(const FontConfiguration &fonts, Findings &findings)
{
    const QStringList directories = fonts.directories();
    for (const QString &directory : directories) {
        const QFileInfo information(directory);
        if (information.isDir() && !(information.isReadable() && information.isExecutable()))
            findings.problem(
                texts::tr("The font directory %1 cannot be read, so that its fonts are not used.")
                    .arg(directory),
                texts::tr("Give yourself the right to read it: chmod u+rx."));
    }
}

/// Whether a directory is writable or, if missing, could be created.
bool canBeWritten(const QString &directory)
{
    QFileInfo information(directory);
    if (information.exists())
        return information.isDir() && information.isWritable() && information.isExecutable();
    while (!information.exists() && !information.isRoot())
        information = QFileInfo(information.path());
    return information.isDir() && information.isWritable();
}

void checkCache(const FontConfiguration &fonts, const QStringList &stale, Findings &findings)
{
    const QStringList caches = fonts.cacheDirectories();
    const bool isWritable = std::any_of(caches.begin(), caches.end(), canBeWritten);
    if (!isWritable)
        findings.problem(
            texts::tr("None of the font cache's directories can be written: %1.")
                .arg(caches.join(QStringLiteral(", "))),
            texts::tr("Give yourself the right to write to one of them, or programs look through "
                      "all fonts at every start."));
    if (stale.isEmpty())
        findings.fine(texts::tr("The font cache is up to date."));
    else if (isWritable)
        findings.note(texts::tr("The font cache was out of date for %1; it has been renewed.")
                          .arg(stale.join(QStringLiteral(", "))));
    else
        findings.problem(texts::tr("The font cache is out of date for %1.")
                             .arg(stale.join(QStringLiteral(", "))),
                         texts::tr("Renew it with: sudo fc-cache --force."));
}

/// Only a missing default font is a problem.
void checkGeneralFamilies(const FontConfiguration &fonts, Findings &findings)
{
    const QString serif = fonts.match(QStringLiteral("serif"));
    const QString sans = fonts.match(QStringLiteral("sans-serif"));
    const QString fixed = fonts.match(QStringLiteral("monospace"));
    findings.fine(texts::tr("Latin text is drawn with %1 (serif), %2 (sans serif) and %3 (fixed "
                            "width).")
                      .arg(serif, sans, fixed));
    if (serif == sans)
        findings.note(texts::tr("There is no serif font apart from the sans serif one. %1")
                          .arg(installFonts("fonts-liberation")));
    if (fixed == sans)
        findings.note(
            texts::tr("There is no fixed width font. %1").arg(installFonts("fonts-dejavu-mono")));
}

void checkLanguages(const FontConfiguration &fonts, Findings &findings)
{
    const QString family = fonts.familyForLanguage(QString::fromLatin1(chinese.code));
    if (family.isEmpty())
        findings.problem(texts::tr("No font has Chinese characters: they show as boxes."),
                         installFonts(chinese.package));
    else
        findings.fine(texts::tr("Chinese text can be drawn, for instance with %1.").arg(family));
    for (const Language &language : otherLanguages) {
        if (fonts.familyForLanguage(QString::fromLatin1(language.code)).isEmpty())
            findings.note(texts::tr("No font has all characters of %1. %2")
                              .arg(languageName(language), installFonts(language.package)));
    }
}

void checkUsualFamilies(const FontConfiguration &fonts, Findings &findings)
{
    const programs::FontMatcher matcher;
    QStringList missing;
    for (const char *each : usualFamilies) {
        const QString family = QString::fromLatin1(each);
        const QStringList names = programs::familyAliases(family);
        if (std::any_of(names.begin(), names.end(),
                        [&](const QString &name) { return fonts.hasFamily(name); }))
            continue;
        const programs::FontMatcher::Match match = matcher.match(family);
        if (match.presence == programs::FontMatcher::Presence::Missing)
            missing.append(family);
        else
            findings.fine(texts::tr("%1 is drawn with %2.").arg(family, match.family));
    }
    if (!missing.isEmpty())
        findings.note(texts::tr("Documents often name fonts that this machine does not have: %1. "
                                "Their text is drawn with another font, and lines may break "
                                "elsewhere.")
                          .arg(missing.join(QStringLiteral(", "))));
}

void checkFamily(const FontConfiguration &fonts, const QString &family, Findings &findings)
{
    const QStringList names = programs::familyAliases(family);
    const auto found = std::find_if(names.begin(), names.end(),
                                    [&](const QString &name) { return fonts.hasFamily(name); });
    if (found != names.end())
        findings.fine(texts::tr("The font %1 is installed.").arg(*found));
    else
        findings.problem(texts::tr("The font %1 is not installed; its text is drawn with %2.")
                             .arg(family, fonts.match(family)),
                         texts::tr("Install the font into ~/.local/share/fonts, or a package that "
                                   "has it."));
}

} // namespace

void checkFonts(const Machine &, const QString &, const QString &argument, Findings &findings)
{
    FontConfiguration fonts;
    if (!fonts.isValid()) {
        findings.problem(texts::tr("The font settings cannot be read."),
                         texts::tr("Install the package fontconfig-config again."));
        return;
    }
    const QStringList stale = fonts.directoriesWithoutCache();
    fonts.loadFonts();
    if (fonts.fontCount() == 0) {
        findings.problem(texts::tr("There are no fonts at all: no text can be shown."),
                         installFonts("fonts-dejavu-core"));
        checkDirectories(fonts, findings);
        return;
    }
    if (!argument.isEmpty()) {
        checkFamily(fonts, argument, findings);
        return;
    }
    checkDirectories(fonts, findings);
    checkCache(fonts, stale, findings);
    checkGeneralFamilies(fonts, findings);
    checkLanguages(fonts, findings);
    checkUsualFamilies(fonts, findings);
}

} // namespace programs
