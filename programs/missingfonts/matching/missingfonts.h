#pragma once

#include <functional>
#include <vector>

#include <QStringList>

#include "programs/missingfonts/common/fontusage.h"
#include "programs/missingfonts/matching/fontmatcher.h"

namespace standin {

/// How the families of a document stand to those of the machine.
struct FontReport
{
    /// Sorted; each family once, however many of its names the document uses.
    QStringList missing;
    /// Sorted, as "wanted: substitute".
    QStringList substituted;
};

using MatchFamily = std::function<FontMatcher::Match(const QString &family)>;

/// Asks @p match for each family by all of its names.
FontReport reportFonts(const std::vector<UsedFamily> &families, const MatchFamily &match);

} // namespace standin
