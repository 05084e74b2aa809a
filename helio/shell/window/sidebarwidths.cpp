#include "helio/shell/window/sidebarwidths.h"

namespace {

constexpr int widest = 480;
/// In a window of less than so many sidebars the sidebar is the narrow one.
constexpr int fewestSidebars = 4;

} // namespace

namespace shell {

void SidebarWidths::use(const QJsonObject &widths)
{
    m_usual = qBound(1, widths.value(QStringLiteral("width")).toInt(), widest);
    m_narrow = qBound(1, widths.value(QStringLiteral("narrow")).toInt(), m_usual);
}

int SidebarWidths::widthIn(int window) const
{
    return window < fewestSidebars * m_usual ? m_narrow : m_usual;
}

} // namespace shell
