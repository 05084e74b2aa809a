#pragma once

#include <QObject>
#include <QString>

#include "host/khelioexport.h"

/// Calls functions of a page's JavaScript.
class HELIO_EXPORT KxWebViewJsApiRunner
{
public:
    virtual ~KxWebViewJsApiRunner();

    /// Calls the page's global function @p callback with the answer @p json, which is the base64
    /// encoding of the JSON text when @p base64 is set. Called on the GUI thread only. A page
    /// without such a function ignores the call.
    virtual void runCallback(const QString &callback, const QString &json, bool base64) = 0;
};

/// The web view behind one browser: owner of its script object and runner of its callbacks.
class HELIO_EXPORT KxWebViewContainer : public QObject, public KxWebViewJsApiRunner
{
    Q_OBJECT

public:
    explicit KxWebViewContainer(QObject *parent = nullptr);
    ~KxWebViewContainer() override;
};

// Shells derive from it.
static_assert(sizeof(KxWebViewContainer) == sizeof(QObject) + sizeof(void *),
              "the size is part of the border");

Q_DECLARE_METATYPE(KxWebViewContainer *)
