#include "helio/webengine/drops/droppedfiles.h"

#include <QDropEvent>
#include <QJsonArray>
#include <QMimeData>
#include <QUrl>

namespace helio {

bool DroppedFiles::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Drop) {
        m_paths.clear();
        const QList<QUrl> urls = static_cast<QDropEvent *>(event)->mimeData()->urls();
        for (const QUrl &url : urls) {
            if (url.isLocalFile())
                m_paths.append(url.toLocalFile());
        }
    }
    return QObject::eventFilter(watched, event);
}

QJsonObject DroppedFiles::take()
{
    const QJsonArray paths = QJsonArray::fromStringList(m_paths);
    m_paths.clear();
    return {{QStringLiteral("paths"), paths}};
}

} // namespace helio
