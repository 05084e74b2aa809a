#pragma once

#include <functional>
#include <vector>

#include <QStringList>

#include "standin/fonts/fontmatcher.h"
#include "standin/fonts/fontusage.h"

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
