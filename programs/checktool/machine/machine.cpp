#include "programs/checktool/machine/machine.h"

#include <QCoreApplication>
#include <QDir>

#include "programs/suitehome/suitehome.h"

namespace programs {

namespace {

const QString probeProgramName = QStringLiteral("/vyrEnvProbe");

} // namespace

Machine Machine::current()
{
    Machine machine;
    machine.environment = QProcessEnvironment::systemEnvironment();
    machine.home = QDir::homePath();
    machine.suiteHome = programs::suiteHome();
    machine.officeDirectory = QCoreApplication::applicationDirPath();
    machine.temporaryDirectory = QDir::tempPath();
    machine.probeProgram = machine.officeDirectory + probeProgramName;
    return machine;
}

QString Machine::variable(const char *name) const
{
    return environment.value(QString::fromLatin1(name));
}

} // namespace programs
