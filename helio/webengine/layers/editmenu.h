#pragma once

class QPoint;
class QWebEngineView;

namespace helio {

/// Shows a menu at @p place in @p view to cut, copy and paste what is there, if there is anything.
void showEditMenu(QWebEngineView *view, const QPoint &place);

} // namespace helio
