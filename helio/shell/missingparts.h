#pragma once

#include <QString>

namespace helio {
class PageDirectory;
}

namespace shell {

/// Chromium's helper program, as Qt will look for it.
QString chromiumHelperPath();

/// What the window cannot do without and does not find, in words for the user; empty when
/// Chromium's helper, the page directory and the page @p startPage are all there.
QString missingPart(const helio::PageDirectory &pages, const QString &startPage);

} // namespace shell
