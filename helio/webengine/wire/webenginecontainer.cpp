#include "helio/webengine/wire/webenginecontainer.h"

#include "helio/webengine/wire/pagewire.h"

namespace helio {

WebEngineContainer::WebEngineContainer(PageWire *wire, QObject *parent)
    : KxWebViewContainer(parent), m_wire(wire)
{
}

void WebEngineContainer::runCallback(const QString &callback, const QString &json, bool base64)
{
    m_wire->deliver(callback, json, base64);
}

} // namespace helio
