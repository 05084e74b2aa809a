#include "helio/webengine/layers/editmenu.h"

#include <QMenu>
#include <QWebEngineView>

#include "qtversion/qtversion.h"
#include "texts/texts.h"

namespace {

struct Entry
{
    QWebEnginePage::WebAction action;
    qtversion::ContextMenu::EditFlag needed;
    QString name;
    QKeySequence::StandardKey key;
};

} // namespace

void helio::showEditMenu(QWebEngineView *view, const QPoint &place)
{
    using Data = qtversion::ContextMenu;
    const Entry entries[] = {
        {QWebEnginePage::Cut, Data::CanCut, texts::tr("Cut"), QKeySequence::Cut},
        {QWebEnginePage::Copy, Data::CanCopy, texts::tr("Copy"), QKeySequence::Copy},
        {QWebEnginePage::Paste, Data::CanPaste, texts::tr("Paste"), QKeySequence::Paste},
        {QWebEnginePage::SelectAll, Data::CanSelectAll, texts::tr("Select all"),
         QKeySequence::SelectAll},
    };
    const Data *data = qtversion::contextMenuOf(*view);
    if (!data || (!data->isContentEditable() && data->selectedText().isEmpty()))
        return;
    auto *menu = new QMenu(view);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const Entry &entry : entries) {
        QAction *item = menu->addAction(entry.name);
        item->setShortcut(entry.key);
        item->setEnabled(data->editFlags().testFlag(entry.needed));
        QObject::connect(
            item, &QAction::triggered, view->page(),
            [page = view->page(), action = entry.action] { page->triggerAction(action); });
    }
    menu->popup(view->mapToGlobal(place));
}
