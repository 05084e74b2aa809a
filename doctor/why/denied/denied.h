#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

#include "doctor/why/denied/pathwalk.h"
#include "doctor/why/denied/remedy.h"

namespace doctor {

/// Whether this process gets an access to a path, and why not.
struct Denial
{
    enum class Verdict {
        Granted,
        Denied,
        Undecided, ///< the way could not be looked at, or the kernel refuses for no known reason
    };

    Verdict verdict = Verdict::Undecided;
    Passage passage;
    /// For people; empty if it is granted.
    QString text;
    std::optional<Remedy> remedy;
};

/// Compares what the rights on the way say with what the kernel answers. Changes nothing and never
/// waits for a pipe or a device.
Denial whyDenied(const QByteArray &path, Access access);

/// The sentence for what blocks; empty if nothing does.
QString explanation(const Passage &passage);

} // namespace doctor
