#pragma once

#include <QJsonObject>
#include <QObject>
#include <QPointer>

#include <functional>

#include "helio/webengine/wire/callqueue.h"
#include "helio/webengine/wire/pageoperations.h"

class KxWebViewAsynJSObject;

namespace helio {

/// The only object in the page's QWebChannel: calls come in through two methods or a property, and
/// answers leave through a signal. Whatever document the main frame shows can reach everything
/// public in its meta-object.
class PageWire : public QObject
{
    Q_OBJECT
    /// A call as an object, which neither side has to write into a text and to read again. A
    /// property: QWebChannel acknowledges method calls with an extra message, which takes about as
    /// long as the answer.
    Q_PROPERTY(QJsonObject jsAsynCall READ jsAsynCall WRITE takeCall NOTIFY jsAsynCallChanged)

public:
    /// Serves the document in the main frame while @p isTrusted returns true.
    explicit PageWire(std::function<bool()> isTrusted, QObject *parent = nullptr);

    /// Empty: the property is for writing only.
    QJsonObject jsAsynCall() const { return {}; }

    /// The same as fromJSAsynCall() with the call's text.
    void takeCall(const QJsonObject &call);

    /// Makes a call in place of the page, after those that the page has made.
    void addCall(const QJsonObject &call);

    void setApi(KxWebViewAsynJSObject *api);
    /// What the shell offers beside the plug-in's commands.
    void setDoctor(DoctorOperations *doctor);
    void setTasks(TaskOperations *tasks);
    void setOperations(const PageOperations &operations);

    /// The page's process has ended. Nothing is delivered until a page calls again: a message to a
    /// process that is gone would keep the channel from the next one.
    void forgetPage();

    /// Calls the page's function @p callback with the JSON, or what it encodes, if the document is
    /// trusted.
    void deliver(const QString &callback, const QString &json, bool base64);

signals:
    /// The JSON is decoded already.
    void callbackToJS(const QString &callback, const QString &json);

    /// Never emitted: QWebChannel warns about properties without a notify signal.
    void jsAsynCallChanged();

public slots:
    /// See KxWebViewAsynJSObject::fromJSAsynCall().
    void fromJSAsynCall(const QString &call);

    /// The same with base64-encoded text.
    void fromJSAsynCallBase64(const QString &call);

private:
    bool isHeard();
    bool isTaken(const QJsonObject &call);
    bool isTakenByHelpers(const QJsonObject &call);
    bool isTakenByShell(const QJsonObject &call);
    void addText(const QString &call, bool base64);

    std::function<bool()> m_isTrusted;
    bool m_hasPage = true;
    QPointer<KxWebViewAsynJSObject> m_api;
    QPointer<DoctorOperations> m_doctor;
    QPointer<TaskOperations> m_tasks;
    PageOperations m_operations;
    CallQueue m_calls;
};

} // namespace helio
