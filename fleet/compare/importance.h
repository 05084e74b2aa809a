#pragma once

#include <QString>

#include "fleet/compare/comparison.h"

namespace fleet {

/// How much a fact can matter where it differs, and why.
struct Importance
{
    /// Greater comes first.
    int rank = 0;
    Weight weight = Weight::Low;
    QString reason;
};

Importance importanceOf(const QString &group, const QString &name);

} // namespace fleet
