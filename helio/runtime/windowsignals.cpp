#include "helio/runtime/windowsignals.h"

#include "host/kheliopluginwidget.h"

helio::WindowSignals::WindowSignals(KHelioPluginWidget *page) : QObject(page)
{
    connect(page, SIGNAL(sigCloseMainWindow()), this, SIGNAL(sigCloseMainWindow()));
    connect(page, SIGNAL(sigShowChildWindow(QString)), this, SIGNAL(sigShowChildWindow(QString)));
    connect(page, SIGNAL(sigShowMinimized()), this, SIGNAL(sigShowMinimized()));
    connect(page, SIGNAL(sigShowNormal()), this, SIGNAL(sigShowNormal()));
    connect(page, SIGNAL(sigCloseChildWindow()), this, SIGNAL(sigCloseChildWindow()));
    connect(page, SIGNAL(sigMousePress()), this, SIGNAL(sigMousePress()));
    connect(page, SIGNAL(sigMouseRelease()), this, SIGNAL(sigMouseRelease()));
    connect(page, SIGNAL(sigChangeHtmlPage(QString)), this, SIGNAL(sigChangeHtmlPage(QString)));
}
