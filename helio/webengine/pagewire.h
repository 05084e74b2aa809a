#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class KxWebViewAsynJSObject;

namespace helio {

/// The one object of the page's QWebChannel: two calls in, one way out. Everything public in its
/// meta-object can be reached by whatever document the main frame shows.
class PageWire : public QObject
{
    Q_OBJECT
    /// A call again, by writing it down. The channel acknowledges every call of a method, in a
    /// message of its own that takes about as long as the answer does, but not a written property.
    Q_PROPERTY(QString jsAsynCall READ jsAsynCall WRITE fromJSAsynCall NOTIFY jsAsynCallChanged)

public:
    /// Serves the document in the main frame while @p isTrusted says so.
    explicit PageWire(std::function<bool()> isTrusted, QObject *parent = nullptr);

    /// Nothing: there is only something to be written.
    QString jsAsynCall() const { return {}; }

    void setApi(KxWebViewAsynJSObject *api);

    /// Calls the page's function @p callback, unless the document is not trusted.
    void deliver(const QString &callback, const QString &json, bool base64);

signals:
    void callbackToJS(const QString &callback, const QString &json, bool base64);

    /// Never emitted: the channel asks for one before it takes a property for a sound one.
    void jsAsynCallChanged();

public slots:
    /// A call as KxWebViewAsynJSObject::fromJSAsynCall() takes it.
    void fromJSAsynCall(const QString &call);

    /// The same, base64 encoded.
    void fromJSAsynCallBase64(const QString &call);

private:
    void pass(const QString &call, bool base64);

    std::function<bool()> m_isTrusted;
    QPointer<KxWebViewAsynJSObject> m_api;
};

} // namespace helio
