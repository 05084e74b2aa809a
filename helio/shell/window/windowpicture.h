#pragma once

#include <QElapsedTimer>
#include <QImage>
#include <QObject>
#include <QTimer>

class QWidget;

namespace helio {
class WebEngineBrowser;
}

namespace shell {

/// Takes a picture of a window once its page has painted and no longer changes.
class WindowPicture : public QObject
{
    Q_OBJECT

public:
    /// Pictures @p window, in which @p browser shows its page, and writes that to @p path as PNG.
    WindowPicture(QWidget *window, helio::WebEngineBrowser *browser, const QString &path);

signals:
    /// The picture has been written if @p fault is empty; else it says why not.
    void finished(const QString &fault);

private:
    void look();
    void askPage();
    void save(const QImage &image);

    QWidget *m_window;
    helio::WebEngineBrowser *m_browser;
    QString m_path;
    QTimer m_timer;
    QElapsedTimer m_waited;
    QImage m_previous;
    /// How many looks in a row saw the same.
    int m_stillLooks = 0;
    bool m_isLoaded = false;
    /// The page has said that it is not busy.
    bool m_isReady = false;
};

} // namespace shell
