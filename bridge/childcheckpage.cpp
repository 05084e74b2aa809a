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
    m_manager.withChildPageBridge([&findings](KVyrAssistantToolAPI &bridge) {
        // The page expects no call name here, unlike with every other later answer.
        publishAnswer(bridge, QLatin1String(findingsCallback), findings, QString());
    });
}

} // namespace OfficeAssiant
