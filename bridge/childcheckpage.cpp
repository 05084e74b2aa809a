#include "bridge/childcheckpage.h"

#include <QJsonObject>

#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"

namespace OfficeAssiant {

namespace {

constexpr char findingsCallback[] = "returnvyrenvcheck";

} // namespace

ChildCheckPage::ChildCheckPage(KToolManager &manager) : m_manager(manager) {}

bool ChildCheckPage::isOpen()
{
    return m_manager.childPageBridge() != nullptr;
}

void ChildCheckPage::show(const QJsonObject &findings)
{
    // Only on the GUI thread is the bridge safe from being deleted, without a lock that a shell
    // could wait for.
    QMetaObject::invokeMethod(
        &m_manager,
        [&manager = m_manager, findings] {
            if (KVyrAssistantToolAPI *bridge = manager.childPageBridge())
                publishFindings(*bridge, QLatin1String(findingsCallback), findings);
        },
        Qt::QueuedConnection);
}

} // namespace OfficeAssiant
