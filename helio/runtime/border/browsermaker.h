#pragma once

#include <functional>

#include "host/kheliobrowser.h"

namespace helio {

/// Makes a browser as a child of the given widget; null when that is not possible.
using BrowserMaker =
    std::function<KHelioBrowserWidgetBase *(QWidget *owner, KxWebViewCefJsApiFlag flag)>;

/// Installs the maker behind CreateHelioBrowserWidget(). The running program decides whether
/// pages are shown by Chromium or by nothing.
HELIO_EXPORT void setBrowserMaker(BrowserMaker maker);

} // namespace helio
