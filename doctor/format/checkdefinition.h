#pragma once

#include <QString>
#include <QVector>

#include <chrono>
#include <optional>

#include "doctor/conditions/condition.h"
#include "doctor/format/localtext.h"
#include "doctor/model/finding.h"
#include "doctor/probes/probe.h"
#include "doctor/repairs/step.h"

namespace doctor {

/// What a check looks at: a probe with conditions, or several joined.
struct Look
{
    enum class Kind {
        Probe,
        All, ///< each part for every match of those before it, whose values it can use
        Any, ///< the matches of all parts
        Not, ///< one match, without values, if its part has none
    };
    struct Expected
    {
        QString value;
        Condition condition;
    };

    Kind kind = Kind::Probe;
    QVector<Look> parts;
    const ProbeKind *probe = nullptr;
    RawArguments arguments;
    QVector<Expected> expected;
    /// In front of the names of the values, with a dot; may be empty.
    QString prefix;
};

struct RepairDefinition
{
    QString id;
    LocalText title;
    /// Whether it fits a finding; always if there is none.
    std::optional<Look> when;
    QVector<Step> steps;
};

/// A check as its file has it.
struct CheckDefinition
{
    enum class Cost {
        Quick,
        Slow
    };

    QString id;
    LocalText title;
    LocalText about;
    Cost cost = Cost::Quick;
    std::chrono::milliseconds limit{2000};
    bool isDisabled = false;
    /// The suite that it belongs to; empty for none. Without an installation it is skipped.
    QString suite;
    /// Whether the check applies to this machine; always if there is none.
    std::optional<Look> when;
    /// Why it does not apply.
    LocalText skipped;
    /// Every match is a finding.
    Look look;
    State state = State::Warning;
    LocalText text;
    QVector<RepairDefinition> repairs;
    /// The file that it was read from.
    QString file;
};

} // namespace doctor
