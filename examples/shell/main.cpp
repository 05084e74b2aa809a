// The main and the child window: a page each, made by the plug-in, and what the pages ask of them.
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QLibrary>
#include <QVBoxLayout>
#include <QWindow>

#include "browser.h"
#include "host/kheliopluginwidgetfactory.h"
#include "host/krt.h"

class Window : public QWidget
{
    Q_OBJECT

public:
    Window(const QString &type, const QString &html, QWidget *owner)
        : QWidget(owner, Qt::Window | Qt::FramelessWindowHint)
    {
        setProperty("widgettype", type);
        setProperty("htmlpath", html);
        m_page = KHelioPluginWidgetFactory::pagePlugin(KHelioPluginWidget::OfficeAssistantPage)
                     ->create(this);
        auto *layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(m_page);
        resize(960, 640);
        // The page's class is private to the plug-in: its signals are known by their signatures.
        connect(m_page, SIGNAL(sigCloseMainWindow()), SLOT(close()));
        connect(m_page, SIGNAL(sigShowMinimized()), SLOT(showMinimized()));
        connect(m_page, SIGNAL(sigShowNormal()), SLOT(showNormal()));
        connect(m_page, SIGNAL(sigMousePress()), SLOT(moveWithMouse()));
        connect(m_page, SIGNAL(sigShowChildWindow(QString)), SIGNAL(viewOpened()));
        connect(m_page, SIGNAL(sigChangeHtmlPage(QString)), SIGNAL(viewChanged(QString)));
        connect(m_page, SIGNAL(sigCloseChildWindow()), SIGNAL(viewClosed()));
    }

    void changePage(const QString &html)
    {
        QMetaObject::invokeMethod(m_page, "onChangeChildHtmlPage", Q_ARG(QString, html));
    }

Q_SIGNALS:
    void viewOpened();
    void viewChanged(const QString &html);
    void viewClosed();
    void closing();

protected:
    // Pages live as long as the program: a command may be running in an event loop of its own.
    void closeEvent(QCloseEvent *event) override
    {
        event->ignore();
        Q_EMIT closing();
    }

private Q_SLOTS:
    void moveWithMouse() { windowHandle()->startSystemMove(); }

private:
    KHelioPluginWidget *m_page;
};

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QDir().mkpath(krt::dirs::orvaneHome());
    QLibrary plugin(QCoreApplication::applicationDirPath() +
                    QStringLiteral("/addons/vyrassistanttool/libofficeassistant.so"));
    if (!plugin.load())
        qFatal("%s", qPrintable(plugin.errorString()));

    Window main(QStringLiteral("main"), QString(), nullptr);
    Window child(QStringLiteral("child"), QStringLiteral("waiting.html"), &main);
    // Unlike exit(), quit() first asks every window of Qt 6's programs, and ours refuse to close.
    QObject::connect(&main, &Window::closing, &application, [] { QCoreApplication::exit(); });
    QObject::connect(&child, &Window::closing, child.findChild<Browser *>(), &Browser::closeView);
    // Either page may open a view in the child window or close it.
    for (Window *window : {&main, &child}) {
        QObject::connect(window, &Window::viewChanged, &child, &Window::changePage);
        QObject::connect(window, &Window::viewOpened, &child, &QWidget::show);
        QObject::connect(window, &Window::viewClosed, &child, &QWidget::hide);
    }
    main.show();
    return QApplication::exec();
}

#include "main.moc"
