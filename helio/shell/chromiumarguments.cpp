#include "helio/shell/chromiumarguments.h"

namespace shell {

ChromiumArguments::ChromiumArguments(const char *programName, int debugPort, bool withoutSandbox)
    : m_texts{programName, "--webEngineArgs"}
{
    // The pages are local: no host name is looked up, whatever a page tries.
    m_texts.emplace_back("--host-resolver-rules=MAP * ~NOTFOUND");
    m_texts.emplace_back("--force-webrtc-ip-handling-policy=disable_non_proxied_udp");
    if (withoutSandbox)
        m_texts.emplace_back("--no-sandbox");
    if (debugPort > 0)
        m_texts.emplace_back("--remote-debugging-port=" + QByteArray::number(debugPort));
    for (QByteArray &text : m_texts)
        m_values.push_back(text.data());
    m_values.push_back(nullptr);
    m_count = static_cast<int>(m_texts.size());
}

} // namespace shell
