#include "programs/missingfonts/matching/missingfonts.h"

#include <QMap>

#include "programs/missingfonts/matching/familyaliases.h"

namespace programs {

namespace {

/// The names that a document gives one font, in the order in which a renderer tries them.
QStringList candidates(const UsedFamily &family)
{
    QStringList names;
    // A comma separates alternatives only: a family's own name may contain one.
    const QString alternatives =
        QString(family.alternative).replace(QLatin1Char(','), QLatin1Char(';'));
    const QStringList written =
        (family.name + QLatin1Char(';') + alternatives).split(QLatin1Char(';'));
    for (const QString &name : written) {
        const QString trimmed = name.trimmed();
        if (!trimmed.isEmpty())
            names.append(trimmed);
    }
    return names;
}

FontMatcher::Match bestMatch(const QStringList &names, const MatchFamily &match)
{
    FontMatcher::Match best;
    for (const QString &name : names) {
        const QStringList aliases = familyAliases(name);
        for (const QString &alias : aliases) {
            FontMatcher::Match found = match(alias);
            if (found.presence == FontMatcher::Presence::Present)
                return found;
            if (found.presence < best.presence)
                best = found;
        }
    }
    return best;
}

} // namespace

FontReport reportFonts(const std::vector<UsedFamily> &families, const MatchFamily &match)
{
    QMap<QString, QString> missing;
    FontReport report;
    for (const UsedFamily &family : families) {
        const QStringList names = candidates(family);
        if (names.isEmpty())
            continue;
        const FontMatcher::Match found = bestMatch(names, match);
        if (found.presence == FontMatcher::Presence::Substituted)
            report.substituted.append(names.first() + QStringLiteral(": ") + found.family);
        if (found.presence != FontMatcher::Presence::Missing)
            continue;
        // A family that the document calls by several names is reported by its English one.
        const QString english = familyAliases(names.first()).first();
        QString &name = missing[english.toCaseFolded()];
        if (name.isEmpty())
            name = names.first();
        else if (name.compare(names.first(), Qt::CaseInsensitive) != 0)
            name = english;
    }
    report.missing = missing.values();
    report.missing.sort();
    report.substituted.sort();
    report.substituted.removeDuplicates();
    return report;
}

} // namespace programs
