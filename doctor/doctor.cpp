#include "doctor/doctor.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

#include <sys/stat.h>
#include <unistd.h>

#include "doctor/format/checkreader.h"
#include "doctor/machine/filereading.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr char administratorDirectory[] = "/etc/office-assistant/checks.d";
constexpr char userDirectory[] = "/office-assistant/checks.d";
constexpr char fileEnding[] = ".json";
constexpr int mostFiles = 1000;

/// Why a check file, or a directory of them, must not be trusted; empty if it may.
QString distrust(const QString &path)
{
    struct stat state;
    if (stat(QFile::encodeName(path).constData(), &state) != 0)
        return {};
    if (state.st_uid != 0 && state.st_uid != geteuid())
        return texts::tr("belongs to another user and is not read");
    if ((state.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        return texts::tr("can be changed by others and is not read");
    return {};
}

Values valuesOf(const Finding &finding)
{
    Values values;
    for (auto value = finding.values.constBegin(); value != finding.values.constEnd(); ++value)
        values.insert(value.key(), Value::ofText(*value));
    return values;
}

} // namespace

CheckDirectories checkDirectories(const Machine &machine, const QString &shipped)
{
    const QString configuration =
        machine.variable(QStringLiteral("XDG_CONFIG_HOME")).value_or(QString());
    return {machine.located(QLatin1String(administratorDirectory)),
            machine.located(configuration + QLatin1String(userDirectory)), shipped};
}

void Doctor::load(const CheckDirectories &directories)
{
    m_checks.clear();
    m_problems.clear();
    m_taken.clear();
    // Without the shipped ones nothing would be looked at, and nothing found.
    if (!QFileInfo::exists(directories.shipped))
        m_problems.append(
            {directories.shipped, {1, 1, texts::tr("the program's checks are missing")}});
    for (const QString &directory :
         {directories.administrator, directories.user, directories.shipped})
        loadDirectory(directory);
    const auto isDisabled = [](const CheckDefinition &check) { return check.isDisabled; };
    m_checks.erase(std::remove_if(m_checks.begin(), m_checks.end(), isDisabled), m_checks.end());
    std::sort(m_checks.begin(), m_checks.end(),
              [](const auto &first, const auto &second) { return first.id < second.id; });
}

void Doctor::loadDirectory(const QString &directory)
{
    if (!QFileInfo::exists(directory))
        return;
    const std::optional<QStringList> names = namesIn(directory, mostFiles);
    const QString reason = names ? distrust(directory) : texts::tr("cannot be read");
    if (!reason.isEmpty()) {
        m_problems.append({directory, {1, 1, reason}});
        return;
    }
    QStringList taken;
    for (const QString &name : *names) {
        if (name.endsWith(QLatin1String(fileEnding)) && !name.startsWith(QLatin1Char('.')))
            addFile(directory + QLatin1Char('/') + name, taken);
    }
    m_taken += taken;
}

void Doctor::addFile(const QString &path, QStringList &taken)
{
    const QString reason = distrust(path);
    if (!reason.isEmpty()) {
        m_problems.append({path, {1, 1, reason}});
        return;
    }
    const CheckFile file = readCheckFile(path);
    for (const Mistake &mistake : file.mistakes)
        m_problems.append({path, mistake});
    for (const CheckDefinition &check : file.checks) {
        if (m_taken.contains(check.id))
            continue;
        if (taken.contains(check.id)) {
            m_problems.append(
                {path, {1, 1, texts::tr("another file has a check \"%1\"").arg(check.id)}});
            continue;
        }
        taken.append(check.id);
        m_checks.append(check);
    }
}

const CheckDefinition *Doctor::check(const QString &id) const
{
    const auto found = std::find_if(m_checks.begin(), m_checks.end(),
                                    [&id](const CheckDefinition &known) { return known.id == id; });
    return found == m_checks.end() ? nullptr : &*found;
}

void Doctor::run(const QStringList &ids, const QString &locale, const ResultHandler &handle) const
{
    QVector<CheckDefinition> wanted;
    for (const CheckDefinition &known : m_checks) {
        if (ids.isEmpty() || ids.contains(known.id))
            wanted.append(known);
    }
    runChecks(wanted, m_machine, locale, handle);
}

Plan Doctor::plan(const Finding &finding, const QString &repair) const
{
    return plan(QVector<Finding>{finding}, repair);
}

Plan Doctor::plan(const QVector<Finding> &findings, const QString &repair,
                  const QVector<Change> &earlier) const
{
    Plan plan;
    const QString id = findings.isEmpty() ? QString() : findings.first().check;
    const CheckDefinition *definition = check(id);
    const auto isRepair = [&repair](const RepairDefinition &known) { return known.id == repair; };
    const QVector<RepairDefinition> repairs =
        definition ? definition->repairs : QVector<RepairDefinition>();
    const auto found = std::find_if(repairs.begin(), repairs.end(), isRepair);
    if (found == repairs.end()) {
        plan.refusal = texts::tr("there is no repair \"%1\" of \"%2\"").arg(repair, id);
    } else {
        QVector<Values> cases;
        std::transform(findings.begin(), findings.end(), std::back_inserter(cases), valuesOf);
        plan = planSteps(found->steps, cases, m_machine, earlier);
    }
    plan.check = id;
    plan.repair = repair;
    return plan;
}

int Doctor::unreadFiles() const
{
    QSet<QString> files;
    for (const FileProblem &problem : m_problems)
        files.insert(problem.file);
    return files.size();
}

} // namespace doctor
