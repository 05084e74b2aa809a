#include "input/inputchecker.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QLocale>

#include <qpa/qplatforminputcontextfactory_p.h>

#include <algorithm>

#include "input/ibusbusaddress.h"
#include "input/inputenvironment.h"

using namespace OfficeAssiant;

namespace {

constexpr char historyTimeFormat[] = "yyyy-MM-dd hh:mm:ss ddd";
constexpr char fcitxName[] = "fcitx";
constexpr char fcitx5Process[] = "fcitx5";
constexpr char ibusName[] = "ibus";
constexpr char ibusProcess[] = "ibus-daemon";
constexpr qint64 noProcess = -1;

InputSystem completed(InputSystem system)
{
    if (!system.pluginKeys)
        system.pluginKeys = &QPlatformInputContextFactory::keys;
    return system;
}

bool isProcessId(const QString &entry)
{
    return std::all_of(entry.begin(), entry.end(), [](QChar c) { return c.isDigit(); });
}

InputCheckError notRunningError(const QString &inputMethod)
{
    return inputMethod.contains(xModifiersInputMethod()) ? ERR_NOT_RUNNING : ERR_INVALID_ENV_CONFIG;
}

} // namespace

InputChecker::InputChecker(QObject *parent) : InputChecker(InputSystem(), parent) {}

InputChecker::InputChecker(const InputSystem &system, QObject *parent)
    : QObject(parent), m_system(completed(system))
{
}

InputChecker::~InputChecker() = default;

QString InputChecker::check()
{
    const QString time =
        QLocale().toString(QDateTime::currentDateTime(), QLatin1String(historyTimeFormat));
    QString found = message(diagnose());
    m_checkHistory.append({time, found});
    return found;
}

qint64 InputChecker::findProcessByName(const QString &name) const
{
    const QDir processes(m_system.processDirectory);
    if (!processes.exists())
        return noProcess;
    const QStringList entries =
        processes.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QString &entry : entries) {
        if (!isProcessId(entry))
            continue;
        const QString target =
            QFile::symLinkTarget(m_system.processDirectory + entry + QStringLiteral("/exe"));
        if (!target.isEmpty() && target.section(QLatin1Char('/'), -1) == name)
            return entry.toUInt();
    }
    return noProcess;
}

QString InputChecker::message(int code)
{
    switch (code) {
    case ERR_OK:
        return QStringLiteral("ERR_OK");
    case ERR_LOADPLUGIN_FAILED:
        return tr("ERR_LOADPLUGIN_FAILED");
    case ERR_NOT_RUNNING:
        return tr("ERR_NOT_RUNNING");
    case ERR_NOT_FIND_BUSCONFIG:
        return tr("ERR_NOT_FIND_BUSCONFIG");
    case ERR_INVALID_ENV_CONFIG:
        return tr("ERR_INVALID_ENV_CONFIG");
    default:
        return tr("ERR_OTHER");
    }
}

const QVector<QPair<QString, QString>> &InputChecker::history() const
{
    return m_checkHistory;
}

InputCheckError InputChecker::diagnose() const
{
    const QString inputMethod = qtInputMethod();
    if (!m_system.pluginKeys().contains(inputMethod))
        return ERR_LOADPLUGIN_FAILED;
    if (inputMethod == QLatin1String(fcitxName))
        return diagnoseFcitx();
    if (inputMethod == QLatin1String(ibusName))
        return diagnoseIbus();
    return ERR_OK;
}

InputCheckError InputChecker::diagnoseFcitx() const
{
    if (isRunning(QLatin1String(fcitxName)) || isRunning(QLatin1String(fcitx5Process)))
        return ERR_OK;
    return notRunningError(QLatin1String(fcitxName));
}

InputCheckError InputChecker::diagnoseIbus() const
{
    if (!isRunning(QLatin1String(ibusProcess)))
        return notRunningError(QLatin1String(ibusName));
    const QString addressFile = ibusBusAddressFile(m_system.machineIdFile);
    qDebug().noquote() << addressFile;
    return QFile::exists(addressFile) ? ERR_OK : ERR_NOT_FIND_BUSCONFIG;
}

bool InputChecker::isRunning(const QString &name) const
{
    return findProcessByName(name) != noProcess;
}
