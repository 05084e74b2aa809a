#pragma once

#include <QWidget>

#include "host/khelioexport.h"

/// Base of every page that a plug-in contributes to the shell.
///
/// The shell makes a page through the plug-in's factory item and passes what it wants to tell the
/// page as dynamic properties of the parent widget: "widgettype" ("main" or "child") and
/// "htmlpath" (the file name of the HTML page; empty for the plug-in's own first page).
class HELIO_EXPORT KHelioPluginWidget : public QWidget
{
    Q_OBJECT

public:
    /// Numbers under which pages are registered. A shell may know more of them.
    enum WidgetType {
        StringType = -1, ///< registered by a type string instead of a number
        OfficeAssistantPage = 64,
    };

    explicit KHelioPluginWidget(QWidget *parent = nullptr);
    ~KHelioPluginWidget() override;

    /// Called after the shell's language has changed, so that the page can set its texts anew.
    virtual void retranslate();
};

// Plug-ins derive from it.
static_assert(sizeof(KHelioPluginWidget) == sizeof(QWidget), "the size is part of the border");
