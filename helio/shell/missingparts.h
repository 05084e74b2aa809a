#pragma once

#include <QString>

namespace helio {
class PageDirectory;
}

namespace shell {

/// The path at which Qt will look for Chromium's helper program.
QString chromiumHelperPath();

/// Tells the user what the window needs and cannot find: Chromium's helper program, the page
/// directory or the page @p startPage. Empty if all are there.
QString missingPart(const helio::PageDirectory &pages, const QString &startPage);

} // namespace shell
