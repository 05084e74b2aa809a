#pragma once

#include <QObject>

#include <mutex>

#include "bridge/childcheckpage.h"
#include "desktop/kdesktophelp.h"
#include "dump/kdumphelp.h"
#include "envcheck/vyrenvcheckthread.h"
#include "host/kfssearch.h"
#include "info/kinfohelp.h"
#include "input/inputchecker.h"
#include "update/kupdatehelp.h"

class KVyrAssistantToolAPI;
class QLibrary;

namespace OfficeAssiant {

/// Owns every helper that the commands work through; shared by all pages of the process.
class KToolManager : public QObject
{
    Q_OBJECT

public:
    using ScreenGrab = void (*)();

    static KToolManager &instance();

    /// The bridge of the latest page of type "main"; null if there is none.
    KVyrAssistantToolAPI *mainPageBridge() const;
    void setMainPageBridge(KVyrAssistantToolAPI *bridge);

    /// The bridge of the latest page of type "child"; null if there is none.
    KVyrAssistantToolAPI *childPageBridge() const;
    void setChildPageBridge(KVyrAssistantToolAPI *bridge);

    /// Called by a bridge that is being destroyed, possibly after the manager at program exit.
    static void forgetBridge(const KVyrAssistantToolAPI *bridge);

    /// Takes a screenshot with the suite's own library; null if it is not installed.
    ScreenGrab screenGrab() const;

private:
    KToolManager();
    ~KToolManager() override;

    /// Their timers, watches and queued calls need the event loop there.
    void moveToGuiThread();

    mutable std::mutex m_bridgeGuard;
    KVyrAssistantToolAPI *m_mainPageBridge = nullptr;
    KVyrAssistantToolAPI *m_childPageBridge = nullptr;
    ChildCheckPage m_checkPage{*this};

public:
    // Constructed in this order and destroyed in the reverse one.
    KDesktopHelp desktopHelp;
    KUpdateHelp updateHelp;
    KInfoHelp infoHelp;
    InputChecker inputChecker;
    KDumpHelp dumpHelp;
    VyrEnvCheckThread envCheckThread{m_checkPage};
    KFsSearch fsSearch;

private:
    QLibrary *m_screenGrabLibrary;
    ScreenGrab m_screenGrab = nullptr;
};

} // namespace OfficeAssiant
