#pragma once

#include <QJsonValue>
#include <QString>

class KxWebViewAsynJSObject;
class KxWebViewJSContext;

namespace OfficeAssiant {

/// The result of a command that only acts.
QString resultSuccess();

/// The result of a command that failed.
QString resultError();

/// The argument @p name of a call as text; an absent one reads as an empty text.
QString textArgument(const KxWebViewJSContext &context, const QString &name);

/// The argument @p name of a call as a truth value; an absent one is false.
bool boolArgument(const KxWebViewJSContext &context, const QString &name);

/// Sets the "result" of a command's answer.
void setResult(KxWebViewJSContext &context, const QJsonValue &result);

/// Tells the shell that what the result calls a success is cut short. The answer stays the same.
void setIncomplete(KxWebViewJSContext &context);

/// Answers @p text as the base64 of its UTF-8 bytes, as the page expects file names and paths.
void setBase64Result(KxWebViewJSContext &context, const QString &text);

/// The base64 encoding of the UTF-8 bytes of @p text.
QString toBase64(const QString &text);

/// Calls the page's function @p callback with a "result", independently of any command.
void publishAnswer(KxWebViewAsynJSObject &bridge, const QString &callback,
                   const QJsonValue &result);

/// The same for the findings of an environment check, whose call context is to have no name.
void publishFindings(KxWebViewAsynJSObject &bridge, const QString &callback,
                     const QJsonValue &findings);

} // namespace OfficeAssiant
