#pragma once

#include <QDialog>
#include <QTreeWidget>

namespace tools {

/// Shows the report on extensions and macros. What has a fault is open and in bold.
class AddonWindow : public QDialog
{
    Q_OBJECT

public:
    AddonWindow();

private:
    void refresh();

    QTreeWidget m_tree;
};

} // namespace tools
