#include "doctor/format/localtext.h"

namespace doctor {

QString LocalText::inLanguage(const QString &locale) const
{
    const QString code = locale.section(QLatin1Char('.'), 0, 0)
                             .section(QLatin1Char('@'), 0, 0)
                             .replace(QLatin1Char('-'), QLatin1Char('_'));
    const QString language = code.section(QLatin1Char('_'), 0, 0);
    for (const QString &wanted : {code, language}) {
        const auto text = byLanguage.constFind(wanted);
        if (text != byLanguage.constEnd())
            return *text;
    }
    const QString anyCountry = language + QLatin1Char('_');
    const auto related = byLanguage.lowerBound(anyCountry);
    if (related != byLanguage.constEnd() && related.key().startsWith(anyCountry))
        return *related;
    return byLanguage.value(QStringLiteral("en"),
                            byLanguage.isEmpty() ? QString() : byLanguage.first());
}

} // namespace doctor
