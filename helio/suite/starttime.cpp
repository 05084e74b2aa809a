#include "helio/suite/starttime.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QTemporaryDir>

#include <algorithm>

#include "doctor/machine/groupprocess.h"
#include "helio/suite/cleanstart.h"
#include "helio/suite/profilecopy.h"
#include "texts/texts.h"

namespace helio {

namespace {

constexpr int pollMs = 20;
/// The first start of a profile makes what it lacks and does not count.
constexpr int rounds = 4;

constexpr char settingsFile[] = "registrymodifications.xcu";
/// The suite makes it at its first start.
constexpr char settingsFolder[] = "/user";
constexpr char recentItem[] = "org.openoffice.Office.Histories:HistoryInfo";
/// Parts that are left out, each in a copy of its own.
constexpr char settingsPart[] = "settings";
constexpr char extensionsPart[] = "extensions";
constexpr char recentPart[] = "recent";
/// Not read by a start.
constexpr char copiesPart[] = "copies";

/// One profile to start with.
struct Variant
{
    /// The part that it lacks; empty for the whole and the empty one.
    QString part{};
    LeftOut leftOut{};
    QString folder{};
    int shortest = longestStartMs;
};

QStringList namesOf(const suites::Profile &profile, const char *part)
{
    for (const suites::PartSize &one : profile.parts) {
        if (one.part == QLatin1String(part))
            return one.names;
    }
    return {};
}

/// The empty one first, then the whole one.
QVector<Variant> variantsOf(const suites::Profile &profile)
{
    const QStringList always = namesOf(profile, copiesPart);
    QVector<Variant> variants{Variant{}, Variant{{}, {always}}};
    for (const char *part : {extensionsPart, settingsPart}) {
        const QStringList names = namesOf(profile, part);
        if (!names.isEmpty())
            variants.append({QLatin1String(part), {always + names}});
        if (names.contains(QLatin1String(settingsFile)))
            variants.append({QLatin1String(recentPart),
                             {always, QLatin1String(settingsFile), QByteArray(recentItem)}});
    }
    return variants;
}

class Measurement
{
public:
    Measurement(const suites::State &state, const StartWatch &watch, int longestMs)
        : m_state(state),
          m_watch(watch),
          m_longestMs(longestMs),
          m_variants(variantsOf(state.profile))
    {
    }

    StartTimes result()
    {
        const QString parent = folderOfProfiles(m_state.installation);
        const QTemporaryDir folder(parent + QStringLiteral("/start-time-XXXXXX"));
        if (!folder.isValid())
            m_times.problem = texts::tr("cannot write to %1: %2").arg(parent, folder.errorString());
        for (int i = 0; i < m_variants.size() && goesOn(); ++i)
            prepare(m_variants[i], folder.filePath(QString::number(i)), i > 0);
        for (int round = 0; round < rounds; ++round) {
            for (Variant &variant : m_variants)
                measure(variant, round > 0);
        }
        if (m_times.problem.isEmpty() && !m_times.isCancelled)
            compare();
        return m_times;
    }

private:
    bool goesOn()
    {
        if (m_times.problem.isEmpty() && !m_times.isCancelled)
            m_times.isCancelled = !m_watch(m_done, rounds * m_variants.size());
        return m_times.problem.isEmpty() && !m_times.isCancelled;
    }

    void prepare(Variant &variant, const QString &folder, bool isCopy)
    {
        variant.folder = folder;
        if (isCopy)
            m_times.problem =
                copyProfile(m_state.profile.path, folder + QLatin1String(settingsFolder),
                            variant.leftOut, [this] { return goesOn(); });
    }

    void measure(Variant &variant, bool counts)
    {
        if (!goesOn())
            return;
        QStringList words = commandWithProfile(m_state.installation, variant.folder) +
                            QStringList{QStringLiteral("--headless"), QStringLiteral("--nologo"),
                                        QStringLiteral("--terminate_after_init")};
        doctor::GroupProcess suite;
        suite.setStandardInputFile(QProcess::nullDevice());
        suite.setStandardOutputFile(QProcess::nullDevice());
        suite.setStandardErrorFile(QProcess::nullDevice());
        QElapsedTimer timer;
        timer.start();
        const QString program = words.takeFirst();
        suite.start(program, words);
        while (goesOn() && suite.state() != QProcess::NotRunning &&
               !suite.waitForFinished(pollMs)) {
            if (timer.hasExpired(m_longestMs))
                m_times.problem = texts::tr("%1 did not come to its end within %2 seconds")
                                      .arg(m_state.installation.name)
                                      .arg(m_longestMs / 1000);
        }
        const int needed = static_cast<int>(timer.elapsed());
        if (suite.state() != QProcess::NotRunning)
            suite.killGroup();
        else if (suite.error() == QProcess::FailedToStart ||
                 suite.exitStatus() != QProcess::NormalExit || suite.exitCode() != 0)
            m_times.problem = texts::tr("%1 cannot be started").arg(m_state.installation.name);
        else if (!QFileInfo::exists(variant.folder + QLatin1String(settingsFolder)))
            m_times.problem =
                texts::tr("%1 ended without having started: %2 may be another program")
                    .arg(m_state.installation.name, program);
        if (counts)
            variant.shortest = qMin(variant.shortest, needed);
        ++m_done;
    }

    void compare()
    {
        m_times.clean = m_variants.at(0).shortest;
        m_times.own = m_variants.at(1).shortest;
        for (const Variant &variant : qAsConst(m_variants)) {
            if (!variant.part.isEmpty())
                m_times.parts.append({variant.part, qMax(0, m_times.own - variant.shortest)});
        }
        std::stable_sort(m_times.parts.begin(), m_times.parts.end(),
                         [](const StartTimes::Part &one, const StartTimes::Part &other) {
                             return one.saved > other.saved;
                         });
    }

    const suites::State &m_state;
    const StartWatch &m_watch;
    const int m_longestMs;
    QVector<Variant> m_variants;
    StartTimes m_times;
    int m_done = 0;
};

} // namespace

StartTimes measuredStart(const suites::State &state, const StartWatch &watch, int longestMs)
{
    if (state.profile.exists)
        return Measurement(state, watch, longestMs).result();
    StartTimes times;
    times.problem = texts::tr("%1 has no profile yet").arg(state.installation.name);
    return times;
}

QJsonObject startTimesObject(const StartTimes &times)
{
    QJsonArray parts;
    for (const StartTimes::Part &one : times.parts)
        parts.append(
            QJsonObject{{QStringLiteral("part"), one.part}, {QStringLiteral("saved"), one.saved}});
    return {{QStringLiteral("clean"), times.clean},
            {QStringLiteral("own"), times.own},
            {QStringLiteral("parts"), parts}};
}

} // namespace helio
