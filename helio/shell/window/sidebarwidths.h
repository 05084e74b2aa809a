#pragma once

#include <QJsonObject>

namespace shell {

/// How wide the main page is beside a view: as it says itself, and less in a small window.
class SidebarWidths
{
public:
    /// @p widths as the page says them, see docs/host.md.
    void use(const QJsonObject &widths);

    /// In a window of the width @p window.
    int widthIn(int window) const;

private:
    // Until the page has said what it needs.
    int m_usual = 224;
    int m_narrow = 56;
};

} // namespace shell
