#pragma once

#include <QString>

class QWebEngineScriptCollection;

namespace helio {

class PageDirectory;
struct PageSurroundings;

/// The callback by which the shell tells its pages how their window is.
QString windowCallback();

/// Adds the script that gives pages below @p directory their window.helio. It runs in main frames
/// only, before the page's own scripts.
void addPageScript(QWebEngineScriptCollection &scripts, const PageDirectory &directory,
                   const PageSurroundings &surroundings, const QStringList &operations);

} // namespace helio
