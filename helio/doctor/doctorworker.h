#pragma once

#include <QElapsedTimer>
#include <QJsonObject>
#include <QMap>

#include <functional>
#include <optional>

#include "doctor/doctor.h"
#include "doctor/journal/journal.h"
#include "helio/doctor/commands/commandrepair.h"
#include "helio/doctor/explanation.h"

namespace helio {

/// One call of a page.
struct DoctorRequest
{
    /// As pages call it: "doctor.look" and so on.
    QString operation;
    QJsonObject arguments;
    /// Whether nobody waits for the rest of a look.
    std::function<bool()> isStopped;
    /// Receives lines as they come.
    std::function<void(const QJsonObject &line)> say;

    /// For findings and titles.
    QString language() const;
    /// Says what the journal has to tell.
    void sayNotes(const QStringList &notes) const;
};

/// Does the doctor's operations. Not thread-safe: all calls come from one thread, and take as long
/// as the checks or the repair.
class DoctorWorker
{
public:
    explicit DoctorWorker(QString shippedChecks) : m_shippedChecks(std::move(shippedChecks)) {}

    /// As pages call them, "doctor.cancel" not among them.
    static QStringList operations();

    /// @return {"result": …}, or {"error": why the request makes no sense}
    QJsonObject answer(const DoctorRequest &request);

private:
    struct Planned
    {
        doctor::Plan plan;
        /// Makes the repair of the plan, and verifies it.
        std::function<RepairOutcome(const DoctorRequest &request)> make;
    };
    struct Operation
    {
        const char *name;
        QJsonObject (DoctorWorker::*answer)(const DoctorRequest &request);
    };
    static const QVector<Operation> &table();
    static QJsonObject result(const QJsonObject &value);
    static QJsonObject error(const QString &reason);

    QJsonObject list(const DoctorRequest &request);
    QJsonObject look(const DoctorRequest &request);
    QJsonObject checkups(const DoctorRequest &request);
    QJsonObject plan(const DoctorRequest &request);
    QJsonObject fix(const DoctorRequest &request);
    QJsonObject undo(const DoctorRequest &request);
    QJsonObject history(const DoctorRequest &request);
    QJsonObject preview(const DoctorRequest &request);
    QJsonObject watch(const DoctorRequest &request);
    QJsonObject watched(const DoctorRequest &request);
    QJsonObject whyOpen(const DoctorRequest &request);
    QJsonObject whyDenied(const DoctorRequest &request);
    QJsonObject whyInput(const DoctorRequest &request);
    QJsonObject suiteDescribe(const DoctorRequest &request);
    QJsonObject suiteChoose(const DoctorRequest &request);
    QJsonObject suitePlan(const DoctorRequest &request);
    QJsonObject suiteStart(const DoctorRequest &request);

    void load();
    /// Keeps a plan under a new number; @return what a page is told of it.
    QJsonObject keep(const Planned &planned);
    /// The line of an explanation, with the plan of its repair.
    QJsonObject told(const Explanation &explanation);
    /// Makes the repair of a plan for findings of one check.
    RepairOutcome repaired(const doctor::Plan &plan, const QVector<doctor::Finding> &findings,
                           const DoctorRequest &request);
    /// Runs checks; @return the texts of what they found.
    QStringList check(const QStringList &ids, const DoctorRequest &request);
    /// Ends a watch that its page has left.
    void endOldWatch(const DoctorRequest &request);
    /// Forgets what the check found before and says what it has found now.
    void report(const doctor::CheckResult &result, const DoctorRequest &request);
    void recover(const DoctorRequest &request);

    QString m_shippedChecks;
    doctor::Doctor m_doctor{doctor::thisMachine()};
    doctor::Journal m_journal;
    bool m_isLoaded = false;
    int m_lastNumber = 0;
    /// What a page may ask a plan for: a finding's values become paths, so that it names findings
    /// by number only.
    QMap<int, doctor::Finding> m_findings;
    /// What a page may have done: exactly what it was shown.
    QMap<int, Planned> m_plans;
    /// The command that the page runs while the journal watches, and since when.
    std::optional<CommandRepair> m_watched;
    QElapsedTimer m_watchTime;
};

} // namespace helio
