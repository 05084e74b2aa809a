#pragma once

#include "doctor/format/checkdefinition.h"

namespace doctor {

/// A case for which a look holds.
struct Match
{
    Values values;
    QVector<Place> where;
};

/// Every case, or why the look could not be had.
struct Matches
{
    QVector<Match> matches;
    QString problem;
};

/// @param known values that the look can use, which its matches have too
Matches evaluated(const Look &look, const Match &known, const Looking &looking);

} // namespace doctor
