#include "helio/headless/headlesspage.h"

#include <QJsonDocument>
#include <QMetaMethod>

#include "helio/headless/headlessbrowser.h"
#include "host/kheliopluginwidget.h"
#include "host/kheliopluginwidgetfactory.h"
#include "host/kxwebviewasynjsobject.h"

namespace helio {

HeadlessPage::HeadlessPage(const QString &type, QObject *parent) : QObject(parent), m_type(type)
{
    auto *item = KHelioPluginWidgetFactory::pagePlugin(KHelioPluginWidget::OfficeAssistantPage);
    if (!item)
        return;
    m_window.setProperty("widgettype", type);
    m_widget = item->create(&m_window);
    m_browser = m_widget->findChild<HeadlessBrowser *>();
    if (m_browser)
        connect(m_browser->container(), &HeadlessContainer::callbackCalled, this,
                &HeadlessPage::receive);
}

HeadlessPage::~HeadlessPage() = default;

bool HeadlessPage::isValid() const
{
    return m_browser && m_browser->api();
}

QString HeadlessPage::type() const
{
    return m_type;
}

KHelioPluginWidget *HeadlessPage::widget() const
{
    return m_widget;
}

QStringList HeadlessPage::commands() const
{
    QStringList names;
    const QMetaObject *metaObject = m_browser->api()->metaObject();
    for (int index = 0; index < metaObject->methodCount(); ++index) {
        const QMetaMethod method = metaObject->method(index);
        if (method.methodType() == QMetaMethod::Slot && method.access() == QMetaMethod::Public &&
            method.parameterTypes() == QList<QByteArray>{"KxWebViewJSContext&"})
            names.append(QString::fromLatin1(method.name()));
    }
    return names;
}

QJsonObject HeadlessPage::call(const QString &command, const QJsonObject &args)
{
    const QString callback = QStringLiteral("headlessCall%1").arg(++m_lastCall);
    m_answers.insert(callback, {});
    const QJsonObject request{{QStringLiteral("command"), command},
                              {QStringLiteral("callback"), callback},
                              {QStringLiteral("args"), args}};
    m_browser->api()->fromJSAsynCall(
        QString::fromUtf8(QJsonDocument(request).toJson(QJsonDocument::Compact)));
    return m_answers.take(callback);
}

void HeadlessPage::receive(const QString &callback, const QString &json, bool base64)
{
    const QByteArray text = base64 ? QByteArray::fromBase64(json.toLatin1()) : json.toUtf8();
    const QJsonObject answer = QJsonDocument::fromJson(text).object();
    const auto awaited = m_answers.find(callback);
    if (awaited != m_answers.end())
        *awaited = answer;
    else
        emit callbackCalled(callback, answer);
}

} // namespace helio
