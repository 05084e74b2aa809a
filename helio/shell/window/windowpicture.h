#pragma once

#include <QElapsedTimer>
#include <QImage>
#include <QObject>
#include <QTimer>

namespace shell {

class PageWindow;

/// Takes a picture of a window once its page has painted and no longer changes.
class WindowPicture : public QObject
{
    Q_OBJECT

public:
    /// The picture is written to @p path as PNG.
    WindowPicture(PageWindow *window, const QString &path, QObject *parent = nullptr);

signals:
    /// The picture has been written if @p fault is empty; else it says why not.
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
