// What pages ask of the window.

#include <QJsonObject>

#include "helio/shell/assistantwindow.h"
#include "helio/shell/window/pageframe.h"
#include "helio/webengine/webenginebrowser.h"

namespace {

/// Longer than usual where the page has said that it will open another view: on a busy machine its
/// next call takes its time, and the main page would flash at its full width.
constexpr int nextViewDelayMs = 1000;

/// From a pointer that comes to a tool until it has surely clicked or gone on.
constexpr int expectedMs = 10'000;

} // namespace

namespace shell {

QJsonObject AssistantWindow::takeAction()
{
    QJsonObject answer = state();
    m_action.clear();
    return answer;
}

QJsonObject AssistantWindow::expectView()
{
    if (m_child && !m_isChildShown)
        m_child->drawUnseen(expectedMs);
    return state();
}

QJsonObject AssistantWindow::leaveView(const QJsonObject &view)
{
    const bool isForAnother = view.value(QStringLiteral("next")).toBool();
    m_hideDelay.setInterval(isForAnother ? nextViewDelayMs : hideDelayMs);
    if (m_child)
        m_child->browser()->closeInPlaceOfPage(view.value(QStringLiteral("type")).toString());
    return state();
}

QJsonObject AssistantWindow::toggleMaximised()
{
    setWindowState(windowState() ^ Qt::WindowMaximized);
    return state();
}

QJsonObject AssistantWindow::useSidebar(const QJsonObject &widths)
{
    m_sidebar.use(widths);
    layOut();
    QJsonObject answer = state();
    answer.insert(QStringLiteral("last"), m_lastView);
    m_lastView.clear();
    return answer;
}

QJsonObject AssistantWindow::state() const
{
    return {{QStringLiteral("action"), m_action},
            {QStringLiteral("maximised"), isMaximized()},
            {QStringLiteral("view"), m_view}};
}

} // namespace shell
