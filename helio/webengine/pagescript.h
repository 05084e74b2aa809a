#pragma once

#include <QString>

class QWebEngineScriptCollection;

namespace helio {

class PageDirectory;
struct PageSurroundings;

/// The callback by which the shell tells the page that the user closes its window.
QString closeCallback();

/// Adds the script that gives pages below @p directory their window.helio. It runs in main frames
/// only, before the page's own scripts.
void addPageScript(QWebEngineScriptCollection &scripts, const PageDirectory &directory,
                   const PageSurroundings &surroundings, const QStringList &operations);

} // namespace helio
