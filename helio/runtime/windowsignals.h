#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include "host/khelioexport.h"

class KHelioPluginWidget;

namespace helio {

/// What a page asks of its window. The class of the page widget is private to the plug-in, so its
/// signals are found by their signatures. The signals declared here are the only list of them.
class HELIO_EXPORT WindowSignals : public QObject
{
    Q_OBJECT

public:
    /// Forwards the signals of @p page, which owns the new object.
    explicit WindowSignals(KHelioPluginWidget *page);

signals:
    void sigCloseMainWindow();
    void sigShowChildWindow(const QString &page);
    void sigShowMinimized();
    void sigShowNormal();
    void sigCloseChildWindow();
    void sigMousePress();
    void sigMouseRelease();
    void sigChangeHtmlPage(const QString &page);

    /// Comes after each signal above, with its name and arguments.
    void forwarded(const QString &signal, const QStringList &arguments);

private slots:
    void report(const QString &page = {});
};

} // namespace helio
