#pragma once

#include <QProcess>

namespace helio {

/// A program with its standard streams at /dev/null: it reads nothing of ours, and whoever reads
/// our output does not have to wait for its end.
class QuietProcess : public QProcess
{
public:
    QuietProcess(const QString &program, const QStringList &arguments)
    {
        setProgram(program);
        setArguments(arguments);
        setStandardInputFile(nullDevice());
        setStandardOutputFile(nullDevice());
        setStandardErrorFile(nullDevice());
    }
};

} // namespace helio
