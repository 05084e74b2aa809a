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
    /// Makes the page through the registered factory item; @p type is "main" or "child".
    explicit HeadlessPage(const QString &type, QObject *parent = nullptr);
    ~HeadlessPage() override;

    /// Whether there is a page with a script object that can be called.
    bool isValid() const;

    QString type() const;
    KHelioPluginWidget *widget() const;

    /// The commands that can be called, in the order in which the script object declares them.
    QStringList commands() const;

    /// Sends a command as the page would and gives the answer: {"result": …}, {} or
    /// {"error": …}. Answers to earlier commands and later answers come as signals meanwhile.
    QJsonObject call(const QString &command, const QJsonObject &args);

signals:
    /// A later answer: @p answer went to the page's function @p callback.
    void callbackCalled(const QString &callback, const QJsonObject &answer);

private:
    void receive(const QString &callback, const QString &json, bool base64);

    QString m_type;
    QWidget m_window;
    KHelioPluginWidget *m_widget = nullptr;
    HeadlessBrowser *m_browser = nullptr;
    int m_lastCall = 0;
    /// The calls that are under way: one may be made in the event loop that another one runs.
    QHash<QString, QJsonObject> m_answers;
};

} // namespace helio
