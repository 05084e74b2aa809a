#include "bridge/ktoolmanager.h"

#include <QCoreApplication>
#include <QLibrary>

#include <initializer_list>

#include "host/krt.h"
#include "plugin/config/scriptstaging.h"

namespace OfficeAssiant {

namespace {

constexpr char updaterDirectory[] = "/opt/orvane/vtool/";
constexpr char screenGrabPath[] =
    "/addons/vyrassistanttool/independScreenshot/libkscreengrablinux.so";
constexpr char screenGrabSymbol[] = "screenShot";

/// A listing of a path that hangs must not keep the program from ending.
constexpr int longestListingMs = 2000;

/// Null before the manager is made and after it is destroyed. Guarded, so that it is not destroyed
/// meanwhile.
KToolManager *living = nullptr;
std::mutex livingGuard;

} // namespace

KToolManager &KToolManager::instance()
{
    static KToolManager manager;
    return manager;
}

KToolManager::KToolManager()
    : updateHelp(QLatin1String(updaterDirectory)),
      m_screenGrabLibrary(new QLibrary(
          krt::dirs::frameworks(QStringLiteral(""), nullptr) + QLatin1String(screenGrabPath), this))
{
    if (m_screenGrabLibrary->load())
        m_screenGrab = reinterpret_cast<ScreenGrab>(m_screenGrabLibrary->resolve(screenGrabSymbol));
    moveToGuiThread();
    const std::lock_guard lock(livingGuard);
    living = this;
}

KToolManager::~KToolManager()
{
    {
        const std::lock_guard lock(livingGuard);
        living = nullptr;
    }
    infoHelp.waitForListings(longestListingMs);
    removeStagedScripts();
}

void KToolManager::moveToGuiThread()
{
    const QCoreApplication *application = QCoreApplication::instance();
    if (!application || application->thread() == thread())
        return;
    const std::initializer_list<QObject *> objects{&desktopHelp,  &updateHelp, &infoHelp,
                                                   &inputChecker, &dumpHelp,   &envCheckThread,
                                                   &fsSearch,     this};
    for (QObject *object : objects)
        object->moveToThread(application->thread());
}

KVyrAssistantToolAPI *KToolManager::mainPageBridge() const
{
    const std::lock_guard lock(m_bridgeGuard);
    return m_mainPageBridge;
}

void KToolManager::setMainPageBridge(KVyrAssistantToolAPI *bridge)
{
    const std::lock_guard lock(m_bridgeGuard);
    m_mainPageBridge = bridge;
}

KVyrAssistantToolAPI *KToolManager::childPageBridge() const
{
    const std::lock_guard lock(m_bridgeGuard);
    return m_childPageBridge;
}

void KToolManager::setChildPageBridge(KVyrAssistantToolAPI *bridge)
{
    const std::lock_guard lock(m_bridgeGuard);
    m_childPageBridge = bridge;
}

void KToolManager::forgetBridge(const KVyrAssistantToolAPI *bridge)
{
    const std::lock_guard livingLock(livingGuard);
    if (!living)
        return;
    const std::lock_guard lock(living->m_bridgeGuard);
    if (living->m_mainPageBridge == bridge)
        living->m_mainPageBridge = nullptr;
    if (living->m_childPageBridge == bridge)
        living->m_childPageBridge = nullptr;
}

KToolManager::ScreenGrab KToolManager::screenGrab() const
{
    return m_screenGrab;
}

} // namespace OfficeAssiant
