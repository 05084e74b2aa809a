#pragma once

#include <QObject>
#include <QString>

#include "host/khelioexport.h"

class KHelioPluginWidget;

namespace helio {

/// What a page asks of its window. The page widget's class is known to its plug-in only, so its
/// signals are reached by their signatures.
class HELIO_EXPORT WindowSignals : public QObject
{
    Q_OBJECT

public:
    /// Passes on the signals of @p page, which owns the new object.
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
};

} // namespace helio
