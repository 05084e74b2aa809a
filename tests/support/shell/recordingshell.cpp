#include "tests/support/shell/recordingshell.h"

#include <QJsonValue>
#include <QTest>

#include <algorithm>

#include "helio/headless/dialoganswers.h"
#include "helio/headless/headlesspage.h"
#include "plugin/kheliopluginwidgetfactoryitem.h"
#include "plugin/kvyrassistanttool.h"
#include "tests/support/patience.h"

namespace testsupport {

namespace {

void registerPage()
{
    // Creates the registry first, so that it outlives the item.
    KHelioPluginWidgetFactory::pagePlugin(KHelioPluginWidget::OfficeAssistantPage);
    static KHelioPluginWidgetFactoryItem<KVyrAssistantTool> item(
        KHelioPluginWidget::OfficeAssistantPage);
    KHelioPluginWidgetFactory::registerPagePlugin(&item);
}

} // namespace

RecordingShell::RecordingShell()
    : m_shell([this](const QJsonObject &event) { m_events.append(event); })
{
    registerPage();
    m_shell.startTracing();
    if (!m_shell.start())
        qFatal("the page has no script object");
}

RecordingShell::~RecordingShell() = default;

QJsonObject RecordingShell::call(const QString &command, const QJsonObject &args,
                                 const QStringList &choices, const QString &page)
{
    helio::DialogAnswers::instance().setChoices(choices);
    return m_shell.page(page)->call(command, args);
}

const QList<QJsonObject> &RecordingShell::events() const
{
    return m_events;
}

QList<QJsonObject> RecordingShell::events(const QString &type) const
{
    QList<QJsonObject> matching;
    std::copy_if(m_events.begin(), m_events.end(), std::back_inserter(matching),
                 [&type](const QJsonObject &event) {
                     return event.value(QLatin1String("type")).toString() == type;
                 });
    return matching;
}

QJsonObject RecordingShell::waitFor(const QString &type, const QString &callback)
{
    QJsonObject found;
    const bool came = QTest::qWaitFor(
        [&] {
            const QList<QJsonObject> candidates = events(type);
            const auto match =
                std::find_if(candidates.begin(), candidates.end(), [&](const QJsonObject &event) {
                    return callback.isEmpty() ||
                           event.value(QLatin1String("callback")).toString() == callback;
                });
            if (match != candidates.end())
                found = *match;
            return match != candidates.end();
        },
        longestWaitMs);
    if (!came)
        qWarning("no such event came");
    return found;
}

void RecordingShell::forget()
{
    m_events.clear();
}

helio::HeadlessShell &RecordingShell::shell()
{
    return m_shell;
}

} // namespace testsupport
