#pragma once

#include <functional>

#include "host/kheliobrowser.h"

namespace helio {

/// Makes a browser as a child of @p owner; null if that is not possible.
using BrowserMaker =
    std::function<KHelioBrowserWidgetBase *(QWidget *owner, KxWebViewCefJsApiFlag flag)>;

/// Installs the maker that CreateHelioBrowserWidget() calls: the program decides whether Chromium
/// shows the pages or nothing does.
HELIO_EXPORT void setBrowserMaker(BrowserMaker maker);

} // namespace helio
