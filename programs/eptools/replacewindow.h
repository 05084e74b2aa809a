#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

#include "programs/replace/documentsearch.h"

namespace tools {

/// Finds text in a folder's documents, shows each hit, and replaces all of them when asked.
class ReplaceWindow : public QDialog
{
    Q_OBJECT

public:
    ReplaceWindow();

private:
    void chooseFolder();
    /// Searches one document after the other between events, so that the window stays alive.
    void search();
    void searchNext();
    void showHits(const programs::SearchedDocument &document);
    void replaceAll();
    void undo();
    void forgetHits();

    QLineEdit m_folder;
    QLineEdit m_find;
    QLineEdit m_replacement;
    QCheckBox m_ignoreCase;
    QTreeWidget m_hits;
    QLabel m_status;
    QPushButton m_search;
    QPushButton m_replace;
    QPushButton m_undo;

    programs::Search m_wanted;
    QStringList m_left;
    QVector<programs::SearchedDocument> m_found;
    int m_hitCount = 0;
    int m_number = 0;
};

} // namespace tools
