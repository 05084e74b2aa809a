#include "host/kxwebviewjscontext.h"

namespace {
constexpr char base64Property[] = "isResultBase64";
}

KxWebViewJSContext::KxWebViewJSContext() = default;

KxWebViewJSContext::~KxWebViewJSContext() = default;

void KxWebViewJSContext::parse(const QString &name, const QString &callback,
                               const QMap<QString, QVariant> &args)
{
    m_name = name;
    m_callback = callback;
    m_arguments = args;
}

QString KxWebViewJSContext::name() const
{
    return m_name;
}

QString KxWebViewJSContext::callback() const
{
    return m_callback;
}

QMap<QString, QVariant> KxWebViewJSContext::arguments() const
{
    return m_arguments;
}

Json::Value &KxWebViewJSContext::result()
{
    return m_result;
}

const Json::Value &KxWebViewJSContext::result() const
{
    return m_result;
}

void KxWebViewJSContext::setIsResultBase64(bool base64)
{
    setProperty(base64Property, base64);
}

bool KxWebViewJSContext::isResultBase64() const
{
    return property(base64Property).toBool();
}

void KxWebViewJSContext::setProperty(const char *name, const QVariant &value)
{
    m_properties.insert(name, value);
}

QVariant KxWebViewJSContext::property(const char *name) const
{
    return m_properties.value(name);
}
