#pragma once

#include "envcheck/checkpage.h"

namespace OfficeAssiant {

class KToolManager;

/// The child page as the receiver of check findings: only a child view shows them.
class ChildCheckPage : public CheckPage
{
public:
    explicit ChildCheckPage(KToolManager &manager);

    bool isOpen() override;
    void show(const QJsonObject &findings) override;

private:
    KToolManager &m_manager;
};

} // namespace OfficeAssiant
