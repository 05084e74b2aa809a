#include "doctor/runner/evaluation.h"

#include "texts/texts.h"

namespace doctor {

namespace {

constexpr int mostMatches = 1000;

QString tooMany()
{
    return texts::tr("more than %1 cases to look at").arg(mostMatches);
}

/// Adds @p seen to @p known if everything that is expected holds.
Judgement addIfExpected(const Look &look, const Match &known, const Observation &seen,
                        const Looking &looking, QVector<Match> &matches)
{
    const auto expand = [&](const QString &text) {
        return expanded(text, known.values, looking.machine);
    };
    for (const Look::Expected &expected : look.expected) {
        const auto value = seen.values.constFind(expected.value);
        if (value == seen.values.constEnd())
            return {};
        Judgement judgement = judge(expected.condition, *value, expand);
        if (!judgement.holds)
            return judgement;
    }
    Match match = known;
    for (auto value = seen.values.constBegin(); value != seen.values.constEnd(); ++value)
        match.values.insert(look.prefix + value.key(), *value);
    for (const Place &place : seen.where) {
        if (match.where.size() < mostMatches)
            match.where.append(place);
    }
    matches.append(match);
    return {true, {}};
}

Matches probed(const Look &look, const Match &known, const Looking &looking)
{
    const ExpandedArguments expansion =
        expandedArguments(look.arguments, look.probe->parameters, known.values, looking.machine);
    if (!expansion.problem.isEmpty())
        return {{}, expansion.problem};
    const Observed observed = look.probe->look(expansion.arguments, looking);
    if (!observed.problem.isEmpty())
        return {{}, observed.problem};
    Matches found;
    for (const Observation &seen : observed.seen) {
        const Judgement judgement = addIfExpected(look, known, seen, looking, found.matches);
        if (!judgement.problem.isEmpty())
            return {{}, judgement.problem};
    }
    return found;
}

Matches allOf(const Look &look, const Match &known, const Looking &looking)
{
    QVector<Match> matches{known};
    for (const Look &part : look.parts) {
        QVector<Match> next;
        for (const Match &match : qAsConst(matches)) {
            Matches found = evaluated(part, match, looking);
            if (!found.problem.isEmpty())
                return found;
            next += found.matches;
            if (next.size() > mostMatches)
                return {{}, tooMany()};
        }
        matches = next;
    }
    return {matches, {}};
}

Matches anyOf(const Look &look, const Match &known, const Looking &looking)
{
    Matches all;
    for (const Look &part : look.parts) {
        Matches found = evaluated(part, known, looking);
        if (!found.problem.isEmpty())
            return found;
        all.matches += found.matches;
        if (all.matches.size() > mostMatches)
            return {{}, tooMany()};
    }
    return all;
}

} // namespace

Matches evaluated(const Look &look, const Match &known, const Looking &looking)
{
    if (looking.deadline.isOver())
        return {{}, texts::tr("took too long")};
    switch (look.kind) {
    case Look::Kind::All:
        return allOf(look, known, looking);
    case Look::Kind::Any:
        return anyOf(look, known, looking);
    case Look::Kind::Not: {
        const Matches found = evaluated(look.parts.first(), known, looking);
        if (!found.problem.isEmpty() || !found.matches.isEmpty())
            return {{}, found.problem};
        return {{known}, {}};
    }
    case Look::Kind::Probe:
        break;
    }
    return probed(look, known, looking);
}

} // namespace doctor
