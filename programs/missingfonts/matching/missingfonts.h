#pragma once

#include <functional>
#include <vector>

#include <QStringList>

#include "programs/missingfonts/common/fontusage.h"
#include "programs/missingfonts/matching/fontmatcher.h"

namespace programs {

/// Which families of a document the machine does not have.
struct FontReport
{
    /// Sorted; each family once, however many of its names the document uses.
    QStringList missing;
    /// Sorted, as "wanted: substitute".
    QStringList substituted;
};

using MatchFamily = std::function<FontMatcher::Match(const QString &family)>;

/// Calls @p match with each name of each family.
FontReport reportFonts(const std::vector<UsedFamily> &families, const MatchFamily &match);

} // namespace programs
