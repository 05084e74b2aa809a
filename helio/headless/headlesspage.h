#pragma once

#include <QHash>
#include <QJsonObject>
#include <QObject>
#include <QStringList>
#include <QWidget>

class KHelioPluginWidget;

namespace helio {

class HeadlessBrowser;

/// The plug-in's page, driven from C++ instead of from JavaScript.
class HeadlessPage : public QObject
{
    Q_OBJECT

public:
    /// Makes a page of type "main" or "child" with the factory that the plug-in registered.
    explicit HeadlessPage(const QString &type, QObject *parent = nullptr);
    ~HeadlessPage() override;

    /// Whether there is a page that commands can be sent from.
    bool isValid() const;

    QString type() const;
    KHelioPluginWidget *widget() const;

    /// The names of all commands, in the order of their declaration.
    QStringList commands() const;

    /// Sends a command as the page would and returns its answer: {"result": …}, {} or
    /// {"error": …}. Later answers, to this or earlier commands, arrive as signals.
    QJsonObject call(const QString &command, const QJsonObject &args);

signals:
    /// A later answer: the page's function @p callback is called with @p answer.
    void callbackCalled(const QString &callback, const QJsonObject &answer);

private:
    void receive(const QString &callback, const QString &json, bool base64);

    QString m_type;
    QWidget m_window;
    KHelioPluginWidget *m_widget = nullptr;
    HeadlessBrowser *m_browser = nullptr;
    int m_lastCall = 0;
    /// The calls in progress. There may be several: a command may run an event loop.
    QHash<QString, QJsonObject> m_answers;
};

} // namespace helio
