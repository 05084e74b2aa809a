#pragma once

#include <QString>

#include "host/kxwebviewasynjsobject.h"

class KxWebViewContainer;
class KxWebViewJSContext;

/// The object that a page's JavaScript talks to: one for each page.
///
/// Every slot that takes a KxWebViewJSContext& is a command of that name; pages rely on the names,
/// misspelt ones included. A command reads its arguments, calls a helper and writes its answer;
/// docs/commands.md describes each. They are implemented by subject in *commands.cpp.
class KVyrAssistantToolAPI : public KxWebViewAsynJSObject
{
    Q_OBJECT

public:
    explicit KVyrAssistantToolAPI(KxWebViewContainer *container);
    ~KVyrAssistantToolAPI() override;

    /// Tells this page that a child view opened ("show") or closed ("hide").
    void notifyHiddenTip(const QString &text);

signals:
    void sigCloseMainWindow();
    void sigShowChildWindow(const QString &page);
    void sigShowMinimized();
    void sigShowNormal();
    void sigMousePress();
    void sigMouseRelease();
    void sigCloseChildWindow();
    void sigChangeHtmlPage(const QString &page);

public slots:
    void mousePress(KxWebViewJSContext &context);
    void mouseRelease(KxWebViewJSContext &context);
    void closemainwindow(KxWebViewJSContext &context);
    void showminimized(KxWebViewJSContext &context);
    void router(KxWebViewJSContext &context);
    void stoppreload(KxWebViewJSContext &context);
    void restartpreload(KxWebViewJSContext &context);
    void screenshots(KxWebViewJSContext &context);
    void recordscreen(KxWebViewJSContext &context);
    void contentreplace(KxWebViewJSContext &context);
    void apilog(KxWebViewJSContext &context);
    void exportsysinfo(KxWebViewJSContext &context);
    void exportoftenfileperm(KxWebViewJSContext &context);
    void exportspecialfileperm(KxWebViewJSContext &context);
    void closechildwindow(KxWebViewJSContext &context);
    void chooselayouterrorfile(KxWebViewJSContext &context);
    void comparefont(KxWebViewJSContext &context);
    void openlaytouerrorfile(KxWebViewJSContext &context);
    void getDumpState(KxWebViewJSContext &context);
    void startDump(KxWebViewJSContext &context);
    void stopDump(KxWebViewJSContext &context);
    void cleardumpdir(KxWebViewJSContext &context);
    void openprinterrorfile(KxWebViewJSContext &context);
    void getcpuinfo(KxWebViewJSContext &context);
    void getmemoryinfo(KxWebViewJSContext &context);
    void getcomputermemory(KxWebViewJSContext &context);
    void getlogfile(KxWebViewJSContext &context);
    void getupdatesupport(KxWebViewJSContext &context);
    void getupdateconfig(KxWebViewJSContext &context);
    void testupdate(KxWebViewJSContext &context);
    void clearlogfile(KxWebViewJSContext &context);
    void testdailyreport(KxWebViewJSContext &context);
    void testuninstallreport(KxWebViewJSContext &context);
    void testinstallreport(KxWebViewJSContext &context);
    void changeupdateconfig(KxWebViewJSContext &context);
    void getdesktopiconfile(KxWebViewJSContext &context);
    void fixfouricon(KxWebViewJSContext &context);
    void fixoneicon(KxWebViewJSContext &context);
    void getassoopen(KxWebViewJSContext &context);
    void getassomime(KxWebViewJSContext &context);
    void fileassorepair(KxWebViewJSContext &context);
    void openremoveurlcheck(KxWebViewJSContext &context);
    void getvyrenvcheckedresult(KxWebViewJSContext &context);
    void runfirefoxplugin(KxWebViewJSContext &context);
    void vyrenvcheck(KxWebViewJSContext &context);
    void copytoclipboard(KxWebViewJSContext &context);
    void stratcheckenv(KxWebViewJSContext &context);
    void stratextractfileinfo(KxWebViewJSContext &context);
    void addconfigfile(KxWebViewJSContext &context);
    void inputcheck(KxWebViewJSContext &context);
    void feedbacktovyr(KxWebViewJSContext &context);
    void getcollectionpage(KxWebViewJSContext &context);
    void choosesamplefile(KxWebViewJSContext &context);
    void archivepackage(KxWebViewJSContext &context);
    void chooseattachment(KxWebViewJSContext &context);
    void opensearchfile(KxWebViewJSContext &context);
    void startsearchfile(KxWebViewJSContext &context);

    void onsearchfileresult(const QString &path, const QString &second, bool flag);
    void onsearchfinished();
    void ondumpfileready();

private:
    /// The view from which the feedback view was opened.
    QString m_collectionPage;
    QString m_layoutProblemFile;
    QString m_printProblemFile;
};
