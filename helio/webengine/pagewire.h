#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class KxWebViewAsynJSObject;

namespace helio {

/// The one object of the page's QWebChannel: two ways in, one way out. Everything public in its
/// meta-object can be reached by whatever document the main frame shows.
class PageWire : public QObject
{
    Q_OBJECT

public:
    /// Serves the document in the main frame while @p isTrusted says so.
    explicit PageWire(std::function<bool()> isTrusted, QObject *parent = nullptr);

    void setApi(KxWebViewAsynJSObject *api);

    /// Calls the page's function @p callback, unless the document is not trusted.
    void deliver(const QString &callback, const QString &json, bool base64);

signals:
    void callbackToJS(const QString &callback, const QString &json, bool base64);

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
