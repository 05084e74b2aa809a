#pragma once

#include "doctor/format/mistake.h"
#include "doctor/model/plan.h"
#include "doctor/runner/runner.h"

namespace doctor {

/// Where check files lie, and in which order of precedence: a check of the administrator replaces
/// the user's and the shipped one of the same id, a check of the user the shipped one.
struct CheckDirectories
{
    QString administrator;
    QString user;
    QString shipped;
};

/// /etc/office-assistant/checks.d, $XDG_CONFIG_HOME/office-assistant/checks.d and @p shipped.
CheckDirectories checkDirectories(const Machine &machine, const QString &shipped);

/// A file that was not read as it should be.
struct FileProblem
{
    QString file;
    Mistake mistake;
};

/// The checks of this machine. Nothing in here changes anything, not even a time of access where
/// the kernel lets it be.
/// Reasons and refusals are in the language of texts::useLanguage().
class Doctor
{
public:
    explicit Doctor(const Machine &machine) : m_machine(machine) {}

    /// Reads the check files ("*.json") of all directories. A file that somebody else could have
    /// written is not read: it must belong to root or to this user, and nobody else may write to
    /// it. A directory that is not there is no problem, unless it is the shipped one.
    void load(const CheckDirectories &directories);

    const QVector<CheckDefinition> &checks() const { return m_checks; }
    const QVector<FileProblem> &problems() const { return m_problems; }
    /// How many check files have problems.
    int unreadFiles() const;
    const Machine &machine() const { return m_machine; }
    /// Null for an unknown id.
    const CheckDefinition *check(const QString &id) const;

    /// Runs checks side by side: those of @p ids, or all. See runChecks().
    void run(const QStringList &ids, const QString &locale, const ResultHandler &handle) const;

    /// What a repair of this finding would change. The finding must come from run(): its values
    /// become paths.
    Plan plan(const Finding &finding, const QString &repair) const;
    /// One plan for several findings of one check. @p earlier is what other plans will have done.
    Plan plan(const QVector<Finding> &findings, const QString &repair,
              const QVector<Change> &earlier = {}) const;

private:
    void loadDirectory(const QString &directory);
    void addFile(const QString &path, QStringList &taken);

    Machine m_machine;
    QVector<CheckDefinition> m_checks;
    QVector<FileProblem> m_problems;
    /// Ids of directories that were read before.
    QStringList m_taken;
};

} // namespace doctor
