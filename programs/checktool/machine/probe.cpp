#include "programs/checktool/machine/probe.h"

#include <QFile>
#include <QJsonDocument>

#include "programs/checktool/machine/facts.h"
#include "programs/checktool/machine/machine.h"
#include "programs/process/boundedprogram.h"
#include "texts/texts.h"

namespace programs {

namespace {

QString nameOf(Probe probe)
{
    switch (probe) {
    case Probe::Bus:
        return QStringLiteral("bus");
    case Probe::Display:
        return QStringLiteral("display");
    case Probe::OpenGl:
        return QStringLiteral("opengl");
    case Probe::Printing:
        break;
    }
    return QStringLiteral("printing");
}

/// Why a probe gave no facts.
QString faultOf(const Machine &machine, const ProgramEnd &end)
{
    if (end.kind == ProgramEnd::Kind::TimedOut)
        return texts::tr("there was no answer within %1 seconds")
            .arg(QString::number(machine.probeMs / 1000.0));
    if (end.kind == ProgramEnd::Kind::NotStarted)
        return texts::tr("%1 cannot be started").arg(machine.probeProgram);
    const QString said = lastLine(end.errors);
    return said.isEmpty() ? texts::tr("trying it ended in a crash") : said;
}

} // namespace

ProbeEnd runProbe(const Machine &machine, Probe probe, const QStringList &arguments)
{
    const ProgramEnd end = runBounded(machine.probeProgram, QStringList(nameOf(probe)) + arguments,
                                      machine.environment, machine.probeMs);
    const QJsonDocument answer = QJsonDocument::fromJson(end.output);
    if (!end.hasSucceeded() || !answer.isObject())
        return {faultOf(machine, end), {}};
    return {answer.object().value(QLatin1String(facts::fault)).toString(), answer.object()};
}

} // namespace programs
