#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVariant>

#include <json/value.h>

#include "host/khelioexport.h"

/// One call of a command: what the page asked and what it is answered.
class HELIO_EXPORT KxWebViewJSContext
{
public:
    KxWebViewJSContext();
    ~KxWebViewJSContext();

    /// Fills in the call: the command's @p name, the page's function that is to receive the
    /// answer, and the arguments by name.
    void parse(const QString &name, const QString &callback, const QMap<QString, QVariant> &args);

    QString name() const;
    QString callback() const;
    QMap<QString, QVariant> arguments() const;

    /// The answer: a JSON object. Null until a command writes to it.
    Json::Value &result();
    const Json::Value &result() const;

    /// Whether the shell sends the whole answer as the base64 of its JSON text. Off at first.
    void setIsResultBase64(bool base64);
    bool isResultBase64() const;

    /// Sets a named property; "isResultBase64" is the same switch as setIsResultBase64(), and
    /// "isResultIncomplete" says that a full disk cut short what the answer calls a success.
    void setProperty(const char *name, const QVariant &value);
    QVariant property(const char *name) const;

private:
    Q_DISABLE_COPY_MOVE(KxWebViewJSContext)

    QString m_name;
    QString m_callback;
    QMap<QString, QVariant> m_arguments;
    QMap<QByteArray, QVariant> m_properties;
    Json::Value m_result;
};

// Plug-ins make them on the stack.
static_assert(sizeof(KxWebViewJSContext) ==
                  2 * sizeof(QString) + 2 * sizeof(QVariantMap) + sizeof(Json::Value),
              "the size is part of the border");
