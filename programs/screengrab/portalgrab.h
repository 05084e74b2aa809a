#pragma once

#include "programs/portal/portal.h"
#include "programs/screengrab/grabbedpicture.h"

namespace programs {

/// Asks the desktop's portal (org.freedesktop.portal.Screenshot) for a screenshot. The portal may
/// ask the user for permission.
class PortalGrab
{
public:
    /// @p answerTimeoutMs includes the time in which the user decides.
    PortalGrab(const QDBusConnection &bus, int answerTimeoutMs);

    GrabbedPicture grab();

private:
    GrabbedPicture pictureOf(const QString &address) const;

    Portal m_portal;
};

} // namespace programs
