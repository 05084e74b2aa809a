#pragma once

#include <QJsonObject>
#include <QVector>

#include <functional>

#include "suites/state/state.h"

namespace helio {

/// How long the suite takes to start, in milliseconds.
struct StartTimes
{
    /// Why it was not measured, for people; empty if it was, or was cancelled.
    QString problem;
    bool isCancelled = false;
    int clean = 0;
    int own = 0;

    /// What leaving out one part of the profile saves.
    struct Part
    {
        /// Of the suite's description, or "recent" for the recent documents.
        QString part;
        int saved = 0;
    };
    /// Those that the profile has, the one that saves most first.
    QVector<Part> parts;
};

/// Asked often, with the starts that are done and all; false ends the measuring.
using StartWatch = std::function<bool(int done, int all)>;

/// Longer does no start take that comes to its end.
constexpr int longestStartMs = 60'000;

/// Starts the suite without windows several times: with an empty profile, with a copy of the
/// user's, and with copies that lack a part. The shortest time of each counts. The user's profile
/// is only read; the copies go at the end. A start that makes no profile, or takes longer than
/// @p longestMs, ends the measuring.
StartTimes measuredStart(const suites::State &state, const StartWatch &watch,
                         int longestMs = longestStartMs);

/// As docs/host.md describes it.
QJsonObject startTimesObject(const StartTimes &times);

} // namespace helio
