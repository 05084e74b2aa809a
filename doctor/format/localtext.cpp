#include "doctor/format/localtext.h"

namespace doctor {

QString LocalText::inLanguage(const QString &locale) const
{
    const QString code = locale.section(QLatin1Char('.'), 0, 0)
                             .section(QLatin1Char('@'), 0, 0)
                             .replace(QLatin1Char('-'), QLatin1Char('_'));
    for (const QString &language :
         {code, code.section(QLatin1Char('_'), 0, 0), QStringLiteral("en")}) {
        const auto text = byLanguage.constFind(language);
        if (text != byLanguage.constEnd())
            return *text;
    }
    return byLanguage.isEmpty() ? QString() : byLanguage.first();
}

} // namespace doctor
