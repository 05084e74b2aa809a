#include <QLocale>
#include <QUrl>

#include <algorithm>

#include "doctor/machine/pathpattern.h"
#include "doctor/probes/kinds.h"

namespace doctor {

namespace {

Observed lookAtFileAddress(const Arguments &arguments, const Looking &)
{
    const QUrl url(arguments.text("fileAddress"), QUrl::StrictMode);
    const QString path = QUrl::fromPercentEncoding(url.path(QUrl::FullyEncoded).toUtf8());
    Observation seen;
    const bool isLocal = url.scheme() == QLatin1String("file") && url.host().isEmpty() &&
                         pathProblem(path).isEmpty();
    seen.values.insert(QStringLiteral("scheme"), Value::ofText(url.scheme()));
    seen.values.insert(QStringLiteral("local"), Value::ofFlag(isLocal));
    if (isLocal) {
        seen.values.insert(QStringLiteral("path"), Value::ofText(path));
        seen.values.insert(QStringLiteral("name"),
                           Value::ofText(path.section(QLatin1Char('/'), -1)));
        seen.values.insert(QStringLiteral("folder"),
                           Value::ofText(path.section(QLatin1Char('/'), 0, -2)));
        seen.where.append({path, 0, 0});
    }
    return {{seen}, {}};
}

/// The locales that texts are shown in, as gettext(3) chooses them.
QStringList messageLocales(const QHash<QString, QString> &environment)
{
    QString locale;
    for (const char *name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (locale.isEmpty())
            locale = environment.value(QLatin1String(name));
    }
    const QString name = locale.section(QLatin1Char('.'), 0, 0);
    if (name.isEmpty() || name == QLatin1String("C") || name == QLatin1String("POSIX"))
        return {};
    QStringList all =
        environment.value(QStringLiteral("LANGUAGE")).split(QLatin1Char(':'), Qt::SkipEmptyParts);
    all.append(locale);
    return all;
}

Observed lookAtUserLanguage(const Arguments &, const Looking &looking)
{
    Observed observed;
    QStringList known;
    for (const QString &entry : messageLocales(looking.machine.environment)) {
        const QString locale =
            entry.section(QLatin1Char('.'), 0, 0).section(QLatin1Char('@'), 0, 0);
        const QString language = locale.section(QLatin1Char('_'), 0, 0);
        const QString country = locale.section(QLatin1Char('_'), 1, 1);
        if (language.size() < 2 || language.size() > 3 || known.contains(language))
            continue;
        known.append(language);
        Observation seen;
        seen.values.insert(QStringLiteral("language"), Value::ofText(language));
        seen.values.insert(QStringLiteral("country"), Value::ofText(country));
        seen.values.insert(
            QStringLiteral("tag"),
            Value::ofText(country.isEmpty() ? language : language + QLatin1Char('-') + country));
        seen.values.insert(QStringLiteral("name"),
                           Value::ofText(QLocale(language).nativeLanguageName()));
        observed.seen.append(seen);
    }
    return observed;
}

constexpr Parameter addressParameters[] = {{"fileAddress", ParameterType::Text, true}};
constexpr ProbeValue addressValues[] = {{"scheme", ValueType::Text},
                                        {"local", ValueType::Flag},
                                        {"path", ValueType::Text},
                                        {"name", ValueType::Text},
                                        {"folder", ValueType::Text}};
constexpr Parameter languageParameters[] = {{"userLanguage", ParameterType::Nothing, true}};
constexpr ProbeValue languageValues[] = {{"language", ValueType::Text},
                                         {"country", ValueType::Text},
                                         {"tag", ValueType::Text},
                                         {"name", ValueType::Text}};

} // namespace

const ProbeKind fileAddressKind{"fileAddress", addressParameters, addressValues,
                                &lookAtFileAddress};
const ProbeKind userLanguageKind{"userLanguage", languageParameters, languageValues,
                                 &lookAtUserLanguage};

} // namespace doctor
