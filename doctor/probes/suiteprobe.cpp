#include "doctor/probes/suiteprobe.h"

#include <algorithm>

#include "doctor/probes/facts.h"
#include "doctor/probes/kinds.h"

namespace doctor {

namespace {

Value joined(const QStringList &names)
{
    return Value::ofText(names.join(QLatin1Char(' ')));
}

Values valuesOf(const suites::Installation &installation, bool isChosen)
{
    return {{QStringLiteral("name"), Value::ofText(installation.name)},
            {QStringLiteral("version"), Value::ofVersion(installation.version)},
            {QStringLiteral("source"), Value::ofText(installation.source)},
            {QStringLiteral("folder"), Value::ofText(installation.folder)},
            {QStringLiteral("profile"), Value::ofText(installation.profile)},
            {QStringLiteral("profileRoot"),
             Value::ofText(installation.profile.section(QLatin1Char('/'), 0, -2))},
            {QStringLiteral("components"), joined(installation.components)},
            {QStringLiteral("plugins"), joined(installation.plugins)},
            {QStringLiteral("languages"), joined(installation.languages)},
            {QStringLiteral("chosen"), Value::ofFlag(isChosen)}};
}

QVector<Values> seenOf(const QString &suite, const Looking &looking)
{
    const QVector<suites::Installation> found =
        looking.facts.installations(looking.machine, looking.deadline).value(suite);
    const std::optional<suites::Installation> chosen = suites::chosen(found, looking.machine);
    QVector<Values> seen;
    for (const suites::Installation &installation : found)
        seen.append(valuesOf(installation, installation.folder == chosen->folder));
    return seen;
}

Observed lookAtSuite(const Arguments &arguments, const Looking &looking)
{
    Observed observed;
    for (const Values &values : seenOf(arguments.text("suite"), looking)) {
        const QString folder = values.value(QStringLiteral("folder")).text;
        observed.seen.append({values, {{folder, 0, 0}}});
    }
    return observed;
}

constexpr Parameter parameters[] = {{"suite", ParameterType::Text, true}};
constexpr ProbeValue values[] = {
    {"name", ValueType::Text},       {"version", ValueType::Version},
    {"source", ValueType::Text},     {"folder", ValueType::Text},
    {"profile", ValueType::Text},    {"profileRoot", ValueType::Text},
    {"components", ValueType::Text}, {"plugins", ValueType::Text},
    {"languages", ValueType::Text},  {"chosen", ValueType::Flag},
};

} // namespace

Values valuesOfSuite(const QString &suite, const Looking &looking)
{
    const QVector<Values> seen = seenOf(suite, looking);
    const auto chosen = std::find_if(seen.begin(), seen.end(), [](const Values &known) {
        return known.value(QStringLiteral("chosen")).number != 0;
    });
    Values prefixed;
    if (chosen == seen.end())
        return prefixed;
    for (auto value = chosen->begin(); value != chosen->end(); ++value)
        prefixed.insert(QStringLiteral("suite.") + value.key(), *value);
    return prefixed;
}

const QHash<QString, QVector<suites::Installation>> &Facts::installations(const Machine &machine,
                                                                          const Deadline &deadline)
{
    std::call_once(m_installationsFound, [&] {
        for (const suites::Description &description : suites::descriptions())
            m_installations.insert(description.id,
                                   suites::installations(description, machine, deadline));
    });
    return m_installations;
}

const ProbeKind suiteKind{"suite", parameters, values, &lookAtSuite};

} // namespace doctor
