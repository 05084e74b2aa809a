#pragma once

#include <QJsonObject>
#include <QString>

#include "fleet/compare/comparison.h"

namespace ctl {

/// Lines for people: the reports, what differs, and the outlier. Those of little weight are counted
/// unless @p all is set.
QString comparisonText(const fleet::Comparison &comparison, const QVector<fleet::Report> &reports,
                       bool all);

/// The same as lines of docs/doctor.schema.json: a line for each report and difference, and one of
/// the type "compared".
QVector<QJsonObject> comparisonLines(const fleet::Comparison &comparison,
                                     const QVector<fleet::Report> &reports);

} // namespace ctl
