#include <QApplication>
#include <QFile>
#include <QWebChannel>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineView>

#include <vector>

#include <unistd.h>

namespace {

/// The object behind a bare channel.
class Echo : public QObject
{
    Q_OBJECT

public slots:
    QString echo(const QString &text) { return text; }
};

QString readResource(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no resource %s", qPrintable(path));
    return QString::fromUtf8(file.readAll());
}

void addChannelScript(QWebEnginePage &page)
{
    QWebEngineScript script;
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setSourceCode(readResource(QStringLiteral(":/qtwebchannel/qwebchannel.js")) +
                         readResource(QStringLiteral(":/bench/barechannel.js")));
    page.scripts().insert(script);
}

} // namespace

/// bare_view PORT FILE [HIDDEN]: a view that shows FILE, with a channel that echoes and DevTools on
/// PORT; a second view, which is never shown, has the file HIDDEN.
int main(int argc, char *argv[])
{
    if (argc != 3 && argc != 4)
        qFatal("usage: bare_view PORT FILE [HIDDEN]");
    QByteArray port = QByteArray("--remote-debugging-port=").append(argv[1]);
    QByteArray chromiumArguments("--webEngineArgs");
    QByteArray noSandbox("--no-sandbox");
    std::vector<char *> arguments{argv[0], chromiumArguments.data(), port.data()};
    if (::getuid() == 0)
        arguments.push_back(noSandbox.data());
    int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);

    const QApplication application(count, arguments.data());
    Echo echo;
    QWebChannel channel;
    channel.registerObject(QStringLiteral("echo"), &echo);
    QWebEngineView view;
    view.page()->setWebChannel(&channel);
    addChannelScript(*view.page());
    view.resize(1000, 680);
    view.load(QUrl::fromLocalFile(QString::fromLocal8Bit(argv[2])));
    view.show();
    QWebEngineView hidden;
    if (argc == 4)
        hidden.load(QUrl::fromLocalFile(QString::fromLocal8Bit(argv[3])));
    return QApplication::exec();
}

#include "bareview.moc"
