#pragma once

#include <QString>

class QWebEngineScriptCollection;

namespace helio {

class PageDirectory;
struct PageSurroundings;

/// The page's function by which the host says that the user closed the window from outside.
QString closeCallback();

/// Adds the script that gives a page below @p directory its window.helio. It runs before the
/// page's own, in main frames only.
void addPageScript(QWebEngineScriptCollection &scripts, const PageDirectory &directory,
                   const PageSurroundings &surroundings);

} // namespace helio
