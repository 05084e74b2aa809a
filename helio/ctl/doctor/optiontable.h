#pragma once

#include <QCommandLineOption>
#include <QList>

namespace ctl {

/// A line for each option: its long name, its value, what it does.
QString optionTable(const QList<QCommandLineOption> &options);

} // namespace ctl
