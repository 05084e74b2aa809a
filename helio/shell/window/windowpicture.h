#pragma once

#include <QElapsedTimer>
#include <QImage>
#include <QObject>
#include <QTimer>

namespace shell {

class PageWindow;

/// Takes a picture of a window once its page has painted and come to rest.
class WindowPicture : public QObject
{
    Q_OBJECT

public:
    /// Writes the picture to @p path as a PNG.
    WindowPicture(PageWindow *window, const QString &path, QObject *parent = nullptr);

signals:
    /// The picture is written, or @p fault says why there is none.
    void finished(const QString &fault);

private:
    void look();
    void save(const QImage &image);

    PageWindow *m_window;
    QString m_path;
    QTimer m_timer;
    QElapsedTimer m_waited;
    QImage m_previous;
    bool m_isLoaded = false;
};

} // namespace shell
