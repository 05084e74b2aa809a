#include "programs/checktool/probe/displayfault.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

#include <unistd.h>

#include "programs/checktool/machine/facts.h"

namespace programs {

namespace {

/// The first warning names the cause, such as an X server that does not respond; the last one is
/// long advice to reinstall Qt.
QString &firstComplaint()
{
    static QString text;
    return text;
}

[[noreturn]] void endWithFault(const QString &fault)
{
    const QJsonObject found{{QLatin1String(facts::fault), fault}};
    std::puts(QJsonDocument(found).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
    _exit(0);
}

void take(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtDebugMsg || type == QtInfoMsg)
        return;
    if (firstComplaint().isEmpty())
        firstComplaint() = message.section(QLatin1Char('\n'), 0, 0);
    if (type == QtFatalMsg)
        endWithFault(firstComplaint());
}

} // namespace

void catchDisplayFaults()
{
    qInstallMessageHandler(take);
}

} // namespace programs
