#include <QFile>

#include <array>
#include <memory>

#include <langinfo.h>
#include <locale.h>

#include "programs/checktool/checks/checks.h"
#include "texts/texts.h"

namespace programs {

namespace {

struct Category
{
    const char *variable;
    int mask;
};

constexpr std::array<Category, 12> categories = {{{"LC_CTYPE", LC_CTYPE_MASK},
                                                  {"LC_MESSAGES", LC_MESSAGES_MASK},
                                                  {"LC_COLLATE", LC_COLLATE_MASK},
                                                  {"LC_NUMERIC", LC_NUMERIC_MASK},
                                                  {"LC_MONETARY", LC_MONETARY_MASK},
                                                  {"LC_TIME", LC_TIME_MASK},
                                                  {"LC_PAPER", LC_PAPER_MASK},
                                                  {"LC_NAME", LC_NAME_MASK},
                                                  {"LC_ADDRESS", LC_ADDRESS_MASK},
                                                  {"LC_TELEPHONE", LC_TELEPHONE_MASK},
                                                  {"LC_MEASUREMENT", LC_MEASUREMENT_MASK},
                                                  {"LC_IDENTIFICATION", LC_IDENTIFICATION_MASK}}};
const char *const allCategories = "LC_ALL";
const char *const language = "LANG";
const QString withoutLanguage = QStringLiteral("C");

struct LocaleFreer
{
    using pointer = locale_t;
    void operator()(locale_t value) const { freelocale(value); }
};
using Locale = std::unique_ptr<locale_t, LocaleFreer>;

Locale open(const QString &name, int mask)
{
    return Locale(newlocale(mask, QFile::encodeName(name).constData(), nullptr));
}

QString encodingOf(const Locale &locale)
{
    return QString::fromLatin1(nl_langinfo_l(CODESET, locale.get()));
}

bool isUtf8(const Locale &locale)
{
    return encodingOf(locale) == QLatin1String("UTF-8");
}

/// The locale to generate: "zh_CN.UTF-8" for "zh_CN", "zh_CN.utf8" and "zh_CN.GBK@x".
QString withUtf8(const QString &name)
{
    const QString place = name.section(QLatin1Char('.'), 0, 0).section(QLatin1Char('@'), 0, 0);
    // The same as "C", but without a variant in UTF-8.
    const bool isPlain = place == QLatin1String("POSIX");
    return (isPlain ? withoutLanguage : place) + QStringLiteral(".UTF-8");
}

void reportInvalid(const QString &variable, const QString &value, Findings &findings)
{
    const QString text =
        texts::tr("%1 is “%2”, a language setting that this system does not have; programs fall "
                  "back to English and may garble file names.")
            .arg(variable, value);
    findings.problem(text, texts::tr("Generate it with “sudo dpkg-reconfigure locales” (or "
                                     "“sudo locale-gen %1”), or choose another language in the "
                                     "desktop's settings.")
                               .arg(withUtf8(value)));
}

/// The setting of a category, and the variable that it comes from.
struct Setting
{
    QString variable;
    QString value;
};

Setting settingOf(const Machine &machine, const char *category)
{
    for (const char *variable : {allCategories, category, language}) {
        const QString value = machine.variable(variable);
        if (!value.isEmpty())
            return {QString::fromLatin1(variable), value};
    }
    return {{}, withoutLanguage};
}

void checkCharacters(const Machine &machine, Findings &findings)
{
    const Setting setting = settingOf(machine, "LC_CTYPE");
    if (setting.variable.isEmpty()) {
        findings.problem(texts::tr("No language is set: neither LC_ALL nor LC_CTYPE nor LANG."),
                         texts::tr("Set LANG, such as LANG=zh_CN.UTF-8, in the desktop's language "
                                   "settings or in /etc/default/locale, and log in again."));
        return;
    }
    const Locale locale = open(setting.value, LC_CTYPE_MASK);
    if (!locale)
        return;
    if (isUtf8(locale))
        findings.fine(texts::tr("Text is encoded in UTF-8 (%1 is “%2”).")
                          .arg(setting.variable, setting.value));
    else
        findings.problem(
            texts::tr("Text is encoded in %1 instead of UTF-8, because %2 is “%3”: file names in "
                      "other scripts cannot be opened.")
                .arg(encodingOf(locale), setting.variable, setting.value),
            texts::tr("Set %1 to a setting with UTF-8, such as %2, and log in again.")
                .arg(setting.variable, withUtf8(setting.value)));
}

void checkVariables(const Machine &machine, Findings &findings)
{
    int valid = 0;
    const auto checkOne = [&](const char *variable, int mask) {
        const QString value = machine.variable(variable);
        if (value.isEmpty())
            return;
        if (open(value, mask))
            ++valid;
        else
            reportInvalid(QString::fromLatin1(variable), value, findings);
    };
    checkOne(allCategories, LC_ALL_MASK);
    checkOne(language, LC_ALL_MASK);
    for (const Category &category : categories)
        checkOne(category.variable, category.mask);
    if (valid > 0)
        findings.fine(valid == 1 ? texts::tr("The one language setting is valid.")
                                 : texts::tr("%1 language settings are valid.").arg(valid));
    const QString all = machine.variable(allCategories);
    if (!all.isEmpty())
        findings.note(texts::tr("LC_ALL is set and hides every other language setting. It is meant "
                                "for single commands; remove it from where the session sets it."));
}

void checkSetting(const QString &name, Findings &findings)
{
    const Locale locale = open(name, LC_ALL_MASK);
    if (!locale)
        reportInvalid(texts::tr("The setting asked for"), name, findings);
    else if (isUtf8(locale))
        findings.fine(texts::tr("The system has the language setting “%1”.").arg(name));
    else
        findings.problem(texts::tr("The system has the language setting “%1”, but it uses %2.")
                             .arg(name, encodingOf(locale)),
                         texts::tr("Use %1 instead.").arg(withUtf8(name)));
}

} // namespace

void checkLocale(const Machine &machine, const QString &, const QString &argument,
                 Findings &findings)
{
    if (!argument.isEmpty()) {
        checkSetting(argument, findings);
        return;
    }
    checkVariables(machine, findings);
    checkCharacters(machine, findings);
}

} // namespace programs
