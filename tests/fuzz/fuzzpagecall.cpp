#include <QJsonDocument>

#include <optional>

#include "host/kxwebviewcontainer.h"
#include "tests/fuzz/echobridge.h"
#include "tests/fuzz/fuzzing.h"

using fuzzing::require;

namespace {

/// The page's side of one call: at most one answer, a JSON object.
class AnsweredPage : public KxWebViewJsApiRunner
{
public:
    void runCallback(const QString &callback, const QString &json, bool base64) override
    {
        require(!callback.isEmpty() && m_answer.isNull());
        const QByteArray text = base64 ? QByteArray::fromBase64(json.toLatin1()) : json.toUtf8();
        require(QJsonDocument::fromJson(text).isObject());
        m_answer = callback + QLatin1Char('\n') + json;
    }

    QString answer() const { return m_answer; }

private:
    QString m_answer;
};

QString answerTo(const QString &call)
{
    AnsweredPage page;
    EchoBridge(&page).fromJSAsynCall(call);
    return page.answer();
}

QString answerToBase64(const QString &call)
{
    AnsweredPage page;
    EchoBridge(&page).fromJSAsynCallBase64(call);
    return page.answer();
}

} // namespace

/// What a page sends as a call, plain, as base64, and in place of base64.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = fuzzing::bytesOf(data, size);
    const QString call = fuzzing::textOf(data, size);
    require(answerTo(call) == answerToBase64(QString::fromLatin1(bytes.toBase64())));
    answerToBase64(call);
    return 0;
}
