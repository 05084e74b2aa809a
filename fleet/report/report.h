#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

namespace fleet {

/// Names with their values.
using Facts = QMap<QString, QString>;

/// What a check of the doctor found.
struct ReportedFinding
{
    QString check;
    /// "bad", "warning" or "note".
    QString state;
    QString text;
};

/// One machine, session and suite at one time; docs/report.schema.json has its JSON.
struct Report
{
    QString host;
    QString user;
    QString home;
    /// ISO 8601, UTC.
    QString made;
    /// By group, such as "packages".
    QMap<QString, Facts> groups;
    QVector<ReportedFinding> findings;
    /// Checks that failed, and parts that could not be read: nothing follows from what is missing.
    QStringList unknown;
};

QJsonObject reportObject(const Report &report);

/// A report, or why there is none.
struct ReadReport
{
    Report report;
    QString problem;
};

/// Takes a report that anybody may have written: what is not of the schema is left out, long texts
/// are cut, and another version is refused.
ReadReport reportFromJson(const QByteArray &json);

/// The same for a file of at most 64 MiB.
ReadReport reportFromFile(const QString &path);

} // namespace fleet
