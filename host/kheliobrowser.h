#pragma once

#include <QObject>
#include <QString>
#include <QUrl>
#include <QWidget>

#include "host/khelioexport.h"
#include "host/kxwebviewcontainer.h"

/// What a new browser offers to the page's JavaScript.
enum KxWebViewCefJsApiFlag {
    NoJsApi = 0,
    AsynchronousJsApi = 1, ///< the browser asks its owner for a script object (creatingApi)
};

/// An embedded browser that shows one local page. Implemented by the shell.
class HELIO_EXPORT KHelioBrowserWidgetBase : public QWidget
{
    Q_OBJECT

public:
    /// Behaviour that can be switched off; the numbers are part of the border.
    enum Feature {
        ContextMenu = 32, ///< the browser's own menu (back, reload, view source)
        FileDrop = 8192,  ///< opening a file or link that is dropped on the page
    };

    explicit KHelioBrowserWidgetBase(QWidget *parent = nullptr);
    ~KHelioBrowserWidgetBase() override;

    /// Zooms the page to 1.2 to the power of @p level; 0 is the page's own size.
    virtual void setZoomLevel(int level) = 0;

    virtual void setFeatureEnabled(Feature feature, bool enabled) = 0;

    /// Whether the page takes the keyboard focus each time it has been loaded.
    virtual void setFocusOnLoad(bool focus) = 0;

    /// Loads the first page. The browser asks for its script object before the page's own
    /// scripts run.
    virtual void setStartupUrl(const QString &url) = 0;

    /// Replaces the page that is shown.
    virtual void navigate(const QUrl &url) = 0;

Q_SIGNALS:
    /// Asks the owner for the object that the page's JavaScript talks to. The owner makes a
    /// KxWebViewAsynJSObject on @p container and writes it to @p api.
    void creatingApi(KxWebViewContainer *container, QObject **api);

    /// A key that the browser received; setting @p handled keeps it from the page.
    void cefKeyEvent(Qt::KeyboardModifiers modifiers, int key, bool pressed, bool &handled);

    void loadFinished(bool ok);
};

// Shells derive from it.
static_assert(sizeof(KHelioBrowserWidgetBase) == sizeof(QWidget), "the size is part of the border");

/// Reports a browser that CreateHelioBrowserWidget made.
class HELIO_EXPORT KHelioBrowserCreator : public QObject
{
    Q_OBJECT

public:
    explicit KHelioBrowserCreator(QObject *parent = nullptr);
    ~KHelioBrowserCreator() override;

Q_SIGNALS:
    void createSucceeded(KHelioBrowserWidgetBase *browser);
};

// The plug-in holds one by value.
static_assert(sizeof(KHelioBrowserCreator) == sizeof(QObject), "the size is part of the border");

/// Starts to make a browser as a child of @p owner and reports it through @p creator, before or
/// after the call returns. Nothing is reported when no browser can be made.
HELIO_EXPORT void CreateHelioBrowserWidget(QWidget *owner, KHelioBrowserCreator *creator,
                                           const QString &name, KxWebViewCefJsApiFlag flag);

Q_DECLARE_METATYPE(KHelioBrowserWidgetBase *)
