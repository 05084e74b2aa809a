#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

#include "fleet/report/report.h"

namespace fleet {

/// How much a difference can matter.
enum class Weight {
    Low, ///< seldom the cause of anything
    Medium,
    High
};

/// Something that is not the same in all reports.
struct Difference
{
    QString group;
    /// What differs in the same way: one name, or several of a group.
    QStringList names;
    /// A value for each report, in their order; nothing where the report does not have it.
    QVector<std::optional<QString>> values;
    Weight weight = Weight::Low;
    /// Why it may matter; for people.
    QString reason;
    /// From three reports on: those that differ from most. Indices, empty if there is no majority.
    QVector<int> deviating;
};

struct Comparison
{
    /// What can matter most comes first.
    QVector<Difference> differences;
    /// From three reports on: the one that differs from the others where they agree.
    std::optional<int> outlier;
};

/// Compares two or more reports. What is never the same on two machines (times, ids, names of
/// hosts and users, paths of homes, order) is no difference.
Comparison compareReports(const QVector<Report> &reports);

} // namespace fleet
