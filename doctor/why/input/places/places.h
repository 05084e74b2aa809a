#pragma once

#include <QStringList>

#include "doctor/machine/machine.h"
#include "doctor/why/input/places/sessionkind.h"
#include "doctor/why/input/places/setting.h"

namespace doctor {

/// What starts a program; empty for a session.
struct Launch
{
    /// The desktop entry; empty if it was not started from one.
    QString entry;
    /// Scripts that started it, the outermost first.
    QStringList scripts;
};

/// A file that could not be read though it is there.
struct UnreadFile
{
    QString path;
    QString problem;
};

struct Settings
{
    /// In the order in which they take effect.
    QVector<Setting> all;
    QVector<UnreadFile> unread;
};

/// All lines that set one of the input variables for a session of the machine's user. Runs nothing.
Settings inputSettings(const Machine &machine, const SessionKind &session, const Launch &launch);

} // namespace doctor
