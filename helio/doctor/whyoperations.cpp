#include <QJsonArray>

#include "helio/doctor/doctorworker.h"

namespace helio {

namespace {

/// Nothing for a word that is none.
std::optional<doctor::Access> accessNamed(const QString &word)
{
    if (word == QLatin1String("read"))
        return doctor::Access::Read;
    if (word == QLatin1String("write"))
        return doctor::Access::Write;
    if (word == QLatin1String("run"))
        return doctor::Access::Run;
    return std::nullopt;
}

/// What a page may ask with: an absolute path, or one below the home directory.
QString pathOf(const QString &path, const doctor::Machine &machine)
{
    return path.startsWith(QLatin1String("~/")) ? machine.home() + path.mid(1) : path;
}

QJsonObject ended(const char *how, const QJsonValue &value)
{
    return {{QLatin1String(how), value}};
}

} // namespace

QJsonObject DoctorWorker::told(const Explanation &explanation)
{
    QJsonObject line = explanation.line;
    if (explanation.repair) {
        const auto make = [this, repair = *explanation.repair](const DoctorRequest &) {
            return verifiedRepair(m_journal, repair.plan, repair.verify);
        };
        line.insert(QStringLiteral("repair"), keep({explanation.repair->plan, make}));
    }
    return ended("result", line);
}

QJsonObject DoctorWorker::whyOpen(const DoctorRequest &request)
{
    const QString suffix = request.arguments.value(QStringLiteral("suffix")).toString();
    if (suffix.isEmpty())
        return ended("result",
                     QJsonObject{{QStringLiteral("suffixes"), allOpenings(m_doctor.machine())}});
    return told(explainedOpening(m_doctor.machine(), suffix));
}

QJsonObject DoctorWorker::whyDenied(const DoctorRequest &request)
{
    const QString path =
        pathOf(request.arguments.value(QStringLiteral("path")).toString(), m_doctor.machine());
    const auto access = accessNamed(request.arguments.value(QStringLiteral("access")).toString());
    if (!path.startsWith(QLatin1Char('/')))
        return ended("error", QStringLiteral("the path is not absolute"));
    if (!access)
        return ended("error", QStringLiteral("no such access"));
    return told(explainedAccess(path, *access));
}

QJsonObject DoctorWorker::whyInput(const DoctorRequest & /*request*/)
{
    return told(explainedInput(m_doctor.machine()));
}

} // namespace helio
