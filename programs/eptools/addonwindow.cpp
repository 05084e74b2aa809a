#include "programs/eptools/addonwindow.h"

#include <QPushButton>
#include <QVBoxLayout>

#include "programs/eptools/addonreport.h"
#include "texts/texts.h"

namespace tools {

namespace {

constexpr int usualWidth = 720;
constexpr int usualHeight = 520;

} // namespace

AddonWindow::AddonWindow()
{
    setWindowTitle(texts::tr("Extensions and macros of LibreOffice"));
    resize(usualWidth, usualHeight);
    m_tree.setHeaderHidden(true);
    auto *refreshButton = new QPushButton(texts::tr("Refresh"));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(&m_tree);
    layout->addWidget(refreshButton, 0, Qt::AlignRight);
    connect(refreshButton, &QPushButton::clicked, this, &AddonWindow::refresh);
    refresh();
}

void AddonWindow::refresh()
{
    m_tree.clear();
    const QVector<ReportSection> sections = addonReport();
    if (sections.isEmpty())
        new QTreeWidgetItem(&m_tree,
                            {texts::tr("No office suite is installed. Install LibreOffice.")});
    for (const ReportSection &part : sections) {
        auto *top = new QTreeWidgetItem(
            &m_tree, {QStringLiteral("%1 (%2)").arg(part.title).arg(part.entries.size())});
        for (const ReportEntry &entry : part.entries) {
            auto *item = new QTreeWidgetItem(top, {entry.heading});
            for (const QString &line : entry.lines)
                new QTreeWidgetItem(item, {line});
            QFont font = item->font(0);
            font.setBold(entry.hasFault);
            item->setFont(0, font);
            item->setExpanded(entry.hasFault);
        }
        top->setExpanded(true);
    }
}

} // namespace tools
