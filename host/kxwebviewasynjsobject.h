#pragma once

#include <QHash>
#include <QObject>
#include <QString>

#include "host/khelioexport.h"

class KxWebViewJSApiHandler;
class KxWebViewJSContext;
class KxWebViewJsApiRunner;

/// Base of the object that a page's JavaScript talks to.
///
/// A derived class offers commands as public slots that take one KxWebViewJSContext& and nothing
/// else; the slot's name is the command. Nothing but those slots, and the handlers that the shell
/// sets, can be called from a page.
///
/// A call is the JSON object {"command": text, "callback": text, "args": {name: value, …}};
/// "callback" and "args" may be left out. The answer is {"result": …}, {} when the command set no
/// result, or {"error": text} when the call was refused; it goes to the page's function named by
/// "callback". A call that cannot be read at all is answered to "helioErrorCallBack".
///
/// The order of the virtual operations is part of the border between shell and plug-in.
class HELIO_EXPORT KxWebViewAsynJSObject : public QObject
{
    Q_OBJECT

public:
    KxWebViewAsynJSObject(QObject *parent, KxWebViewJsApiRunner *runner);
    ~KxWebViewAsynJSObject() override;

    /// Sets up the handlers that every page of the shell has.
    virtual void initHandlers();

    /// Makes @p handler serve @p command before any slot is looked for; null takes it away.
    /// The caller keeps the ownership.
    virtual void setHandler(const QString &command, KxWebViewJSApiHandler *handler);

    /// The handler of @p command, or null.
    virtual KxWebViewJSApiHandler *findHandler(const QString &command);

    /// Whether initHandlers() has run.
    virtual bool isHandlersValid();

    /// Runs @p command through @p handler or, without one, through the slot of that name.
    /// False when there is neither.
    virtual bool doCallFunction(const QString &command, KxWebViewJSContext &context,
                                KxWebViewJSApiHandler *handler);

    /// Looks up @p command, runs it and, if @p publish is set, delivers the answer or the refusal.
    /// False when the command is unknown.
    virtual bool handleMethod(const QString &command, KxWebViewJSContext &context, bool publish);

    virtual void setWebViewContainer(KxWebViewJsApiRunner *runner);

    /// A call as the page sends it. Never throws; whatever @p call holds is answered.
    virtual void fromJSAsynCall(const QString &call);

    /// The same for a call whose JSON text is base64 encoded.
    virtual void fromJSAsynCallBase64(const QString &call);

    /// Calls the page's function @p callback. May be called from any thread: the call is made on
    /// the thread of this object, in the order of the requests.
    virtual void callbackToJS(const QString &callback, const QString &json, bool base64);

    /// Handles a call at the next turn of the event loop. May be called from any thread.
    virtual void queueJSAsynCall(const QString &call, bool base64);

    /// Delivers the answer of @p context to the function that it names. May be called from any
    /// thread; @p context can be destroyed at once.
    void publishResult(const KxWebViewJSContext &context);

private:
    KxWebViewJsApiRunner *m_runner;
    QHash<QString, KxWebViewJSApiHandler *> m_handlers;
    bool m_handlersValid = false;
};

// Plug-ins derive from it.
static_assert(sizeof(KxWebViewAsynJSObject) == sizeof(QObject) + 3 * sizeof(void *),
              "the size is part of the border");
