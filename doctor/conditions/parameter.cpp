#include "doctor/conditions/parameter.h"

#include <algorithm>

#include "doctor/conditions/pattern.h"
#include "doctor/conditions/units.h"
#include "doctor/machine/pathpattern.h"
#include "texts/texts.h"

namespace doctor {

namespace {

QString filledProblem(const Parameter &parameter, const QString &text)
{
    switch (parameter.type) {
    case ParameterType::Path:
    case ParameterType::PathPattern:
        return pathProblem(text);
    case ParameterType::Pattern:
        return Pattern::problemOf(text);
    case ParameterType::Number: {
        bool isNumber = false;
        text.toDouble(&isNumber);
        return isNumber ? QString()
                        : texts::tr("expected a number, not \"%1\"").arg(text.left(100));
    }
    case ParameterType::Duration:
        return ageOf(text)
                   ? QString()
                   : texts::tr("expected a time such as \"2s\", not \"%1\"").arg(text.left(100));
    case ParameterType::Mode:
        return changedMode(0, text)
                   ? QString()
                   : texts::tr("expected a mode such as \"600\" or \"u+rw\", not \"%1\"")
                         .arg(text.left(100));
    case ParameterType::Word: {
        const QStringList words = QString::fromLatin1(parameter.words).split(QLatin1Char('|'));
        return words.contains(text) ? QString()
                                    : texts::tr("expected one of %1, not \"%2\"")
                                          .arg(words.join(QStringLiteral(", ")), text.left(100));
    }
    case ParameterType::Flag:
    case ParameterType::Nothing:
    case ParameterType::Text:
    case ParameterType::Texts:
        break;
    }
    return {};
}

/// Where a path begins with a variable, it is absolute; where "/" comes first, it is known to be.
bool isFilledLater(const Parameter &parameter, const QString &text)
{
    return parameter.type != ParameterType::Pattern && hasPlaceholders(text);
}

} // namespace

QString Arguments::text(const char *name, const char *fallback) const
{
    const QStringList values = texts(name);
    return values.isEmpty() ? QLatin1String(fallback) : values.first();
}

double Arguments::number(const char *name, double fallback) const
{
    return has(name) ? text(name).toDouble() : fallback;
}

std::chrono::milliseconds Arguments::duration(const char *name,
                                              std::chrono::milliseconds fallback) const
{
    const std::optional<double> seconds = ageOf(text(name));
    return seconds ? std::chrono::milliseconds(static_cast<qint64>(*seconds * 1000)) : fallback;
}

ExpandedArguments expandedArguments(const RawArguments &raw, Table<Parameter> parameters,
                                    const Values &values, const Machine &machine)
{
    RawArguments filled;
    for (const Parameter &parameter : parameters) {
        const QString name = QLatin1String(parameter.name);
        const Filling filling =
            parameter.type == ParameterType::PathPattern ? Filling::ForPathPattern : Filling::AsIs;
        const QStringList texts = raw.value(name);
        for (const QString &text : texts) {
            const Expansion expansion = parameter.type == ParameterType::Pattern
                                            ? Expansion{text, {}}
                                            : expanded(text, values, machine, filling);
            const QString problem = expansion.problem.isEmpty()
                                        ? filledProblem(parameter, expansion.text)
                                        : expansion.problem;
            if (!problem.isEmpty())
                return {{}, problem};
            filled[name].append(expansion.text);
        }
    }
    return {Arguments(filled), {}};
}

QString parameterProblem(const Parameter &parameter, const QString &text)
{
    if (!isFilledLater(parameter, text))
        return filledProblem(parameter, text);
    if (text.split(QLatin1Char('/')).contains(QStringLiteral("..")) &&
        (parameter.type == ParameterType::Path || parameter.type == ParameterType::PathPattern))
        return texts::tr("a path may not contain \"..\"");
    return templateProblem(text);
}

} // namespace doctor
