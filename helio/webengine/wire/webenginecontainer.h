#pragma once

#include "host/kxwebviewcontainer.h"

namespace helio {

class PageWire;

/// The container of a WebEngineBrowser, which sends answers through the wire.
class WebEngineContainer : public KxWebViewContainer
{
    Q_OBJECT

public:
    explicit WebEngineContainer(PageWire *wire, QObject *parent = nullptr);

    void runCallback(const QString &callback, const QString &json, bool base64) override;

private:
    PageWire *m_wire;
};

} // namespace helio
