#include "helio/shell/window/windowmemory.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QWidget>

#include <algorithm>

namespace {

constexpr char areaKey[] = "window/area";
constexpr char maximisedKey[] = "window/maximised";
constexpr char viewKey[] = "window/view";

constexpr QSize startSize(1120, 720);
constexpr QSize leastSize(720, 480);

QVector<QRect> availableScreens(const QWidget *window)
{
    QVector<QRect> areas{window->screen()->availableGeometry()};
    for (const QScreen *screen : QGuiApplication::screens())
        areas.append(screen->availableGeometry());
    return areas;
}

int sharedSpace(const QRect &area, const QRect &screen)
{
    const QRect shared = area.intersected(screen);
    return shared.width() * shared.height();
}

} // namespace

namespace shell {

WindowMemory::WindowMemory(const QString &file) : m_file(file) {}

RememberedWindow WindowMemory::read() const
{
    if (m_file.isEmpty())
        return {};
    const QSettings settings(m_file, QSettings::IniFormat);
    return {settings.value(QLatin1String(areaKey)).toRect(),
            settings.value(QLatin1String(maximisedKey)).toBool(),
            settings.value(QLatin1String(viewKey)).toString()};
}

void WindowMemory::keep(const RememberedWindow &state) const
{
    if (m_file.isEmpty())
        return;
    QSettings settings(m_file, QSettings::IniFormat);
    settings.setValue(QLatin1String(areaKey), state.area);
    settings.setValue(QLatin1String(maximisedKey), state.isMaximised);
    settings.setValue(QLatin1String(viewKey), state.view);
}

QRect fittedToScreens(const QRect &area, const QVector<QRect> &screens)
{
    if (screens.isEmpty())
        return area;
    const auto showsLess = [&area](const QRect &one, const QRect &other) {
        return sharedSpace(area, one) < sharedSpace(area, other);
    };
    const QRect screen = *std::max_element(screens.begin(), screens.end(), showsLess);
    QRect fitted(area.topLeft(), area.size().boundedTo(screen.size()));
    fitted.moveLeft(qBound(screen.left(), fitted.left(), screen.right() - fitted.width() + 1));
    fitted.moveTop(qBound(screen.top(), fitted.top(), screen.bottom() - fitted.height() + 1));
    return fitted;
}

void placeWindow(QWidget *window, const QRect &area)
{
    const QRect usable = window->screen()->availableGeometry();
    QRect wanted = area;
    if (!wanted.isValid()) {
        wanted = QRect(QPoint(), startSize.boundedTo(usable.size()));
        wanted.moveCenter(usable.center());
    }
    // A screen may be smaller than the least size.
    window->setMinimumSize(leastSize.boundedTo(usable.size()));
    window->setGeometry(fittedToScreens(wanted, availableScreens(window)));
}

} // namespace shell
