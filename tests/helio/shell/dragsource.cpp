#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include <cstdio>

namespace {

/// A file of another program: it can be dragged from every point of the window.
class DragSource : public QWidget
{
public:
    explicit DragSource(const QString &file) : m_file(QUrl::fromLocalFile(file))
    {
        setFixedSize(120, 80);
        // Without the frame that a Wayland session leaves to programs.
        setWindowFlags(Qt::FramelessWindowHint);
        setPalette(QColor(0x12, 0x34, 0x56));
    }

protected:
    void mousePressEvent(QMouseEvent *) override
    {
        auto *content = new QMimeData;
        content->setUrls({m_file});
        auto *drag = new QDrag(this);
        drag->setMimeData(content);
        drag->exec(Qt::CopyAction);
        std::fputs("the file was let go\n", stderr);
    }

private:
    const QUrl m_file;
};

} // namespace

/// A window from which the file that is named can be dragged.
int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    DragSource source(QApplication::arguments().value(1));
    source.show();
    return QApplication::exec();
}
