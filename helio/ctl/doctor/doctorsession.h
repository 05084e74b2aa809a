#pragma once

#include "doctor/doctor.h"
#include "helio/ctl/doctor/doctorline.h"
#include "helio/ctl/doctor/doctorprinter.h"
#include "helio/doctor/verifiedrepair.h"

namespace doctor {
class Journal;
}

namespace ctl {

/// The exit status of "assistantctl doctor".
enum DoctorStatus {
    Done = 0,        ///< nothing found, or done as asked
    Found = 1,       ///< findings, mistakes in a check file, or something not repaired
    Misused = 2,     ///< wrong usage
    CheckFailed = 3, ///< a check failed itself, or its file cannot be read
};

/// Does what one command line asks of the doctor.
class DoctorSession
{
public:
    DoctorSession(const doctor::Doctor &doctor, doctor::Journal &journal, DoctorPrinter &printer,
                  QString locale)
        : m_doctor(doctor),
          m_journal(journal),
          m_printer(printer),
          m_locale(std::move(locale)),
          m_failed(doctor.unreadFiles())
    {
    }

    DoctorStatus check(const QStringList &ids);
    /// The suites, then the checks.
    DoctorStatus list();
    /// Looks after the suite in that folder from now on.
    DoctorStatus choose(const QString &folder);
    /// Repairs what is found. A dry run only shows the plans, and writes nothing.
    DoctorStatus fix(const DoctorLine &line);
    DoctorStatus undo(int number);
    DoctorStatus history();

private:
    /// Runs checks and prints them; their findings go to m_findings.
    void look(const QStringList &ids);
    void printSuites();
    DoctorStatus summary(bool hasRemaining);
    /// The repair to take for a finding; empty if none fits.
    QString repairFor(const doctor::Finding &finding, const DoctorLine &line) const;
    helio::RepairOutcome repair(const doctor::Finding &finding, const DoctorLine &line);
    helio::RepairOutcome apply(const doctor::Finding &finding, const doctor::Plan &plan);

    const doctor::Doctor &m_doctor;
    doctor::Journal &m_journal;
    DoctorPrinter &m_printer;
    QString m_locale;
    QVector<doctor::Finding> m_findings;
    int m_checks = 0;
    int m_failed = 0;
};

} // namespace ctl
