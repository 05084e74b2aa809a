#include "programs/eptools/replacewindow.h"

#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QStandardPaths>
#include <QTimer>
#include <QVBoxLayout>

#include "programs/replace/replacing.h"
#include "texts/texts.h"

namespace tools {

namespace {

using Outcome = doctor::JournalResult::Outcome;

constexpr int usualWidth = 760;
constexpr int usualHeight = 520;

} // namespace

ReplaceWindow::ReplaceWindow()
    : m_folder(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)),
      m_ignoreCase(texts::tr("Ignore upper and lower case")),
      m_search(texts::tr("Search")),
      m_replace(texts::tr("Replace all")),
      m_undo(texts::tr("Undo"))
{
    setWindowTitle(texts::tr("Replace text in documents"));
    resize(usualWidth, usualHeight);
    auto *choose = new QPushButton(texts::tr("Choose…"));
    auto *folder = new QHBoxLayout;
    folder->addWidget(&m_folder);
    folder->addWidget(choose);
    auto *form = new QFormLayout;
    form->addRow(texts::tr("Folder"), folder);
    form->addRow(texts::tr("Find"), &m_find);
    form->addRow(texts::tr("Replace with"), &m_replacement);
    form->addRow(QString(), &m_ignoreCase);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(&m_status, 1);
    for (QPushButton *button : {&m_search, &m_replace, &m_undo})
        buttons->addWidget(button);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(&m_hits, 1);
    layout->addLayout(buttons);
    m_status.setWordWrap(true);
    m_hits.setHeaderHidden(true);
    m_replace.setEnabled(false);
    m_undo.setEnabled(false);
    m_search.setDefault(true);
    m_find.setFocus();
    connect(choose, &QPushButton::clicked, this, &ReplaceWindow::chooseFolder);
    connect(&m_search, &QPushButton::clicked, this, &ReplaceWindow::search);
    connect(&m_replace, &QPushButton::clicked, this, &ReplaceWindow::replaceAll);
    connect(&m_undo, &QPushButton::clicked, this, &ReplaceWindow::undo);
    for (QLineEdit *field : {&m_folder, &m_find, &m_replacement})
        connect(field, &QLineEdit::textChanged, this, &ReplaceWindow::forgetHits);
    connect(&m_ignoreCase, &QCheckBox::toggled, this, &ReplaceWindow::forgetHits);
}

void ReplaceWindow::chooseFolder()
{
    const QString folder =
        QFileDialog::getExistingDirectory(this, texts::tr("Folder"), m_folder.text());
    if (!folder.isEmpty())
        m_folder.setText(folder);
}

/// What is shown must be what is replaced.
void ReplaceWindow::forgetHits()
{
    m_left.clear();
    m_found.clear();
    m_hits.clear();
    m_hitCount = 0;
    m_replace.setEnabled(false);
    m_status.clear();
}

void ReplaceWindow::search()
{
    forgetHits();
    if (m_find.text().isEmpty() || !QDir(m_folder.text()).exists()) {
        m_status.setText(texts::tr("Choose a folder and enter the text to find."));
        return;
    }
    m_wanted = {m_find.text(), m_replacement.text(), m_ignoreCase.isChecked()};
    m_left = programs::documentsIn({m_folder.text()});
    searchNext();
}

void ReplaceWindow::searchNext()
{
    if (m_left.isEmpty()) {
        m_status.setText(
            texts::tr("Hits: %1, in documents: %2.").arg(m_hitCount).arg(m_found.size()));
        m_replace.setEnabled(!m_found.isEmpty());
        return;
    }
    m_status.setText(texts::tr("Searching, %1 documents left…").arg(m_left.size()));
    showHits(programs::searchedDocument(m_left.takeFirst(), m_wanted));
    QTimer::singleShot(0, this, [this, find = m_wanted.find] {
        // Whoever has changed the fields meanwhile sees no hits.
        if (m_status.text().isEmpty() || find != m_find.text())
            return;
        searchNext();
    });
}

void ReplaceWindow::showHits(const programs::SearchedDocument &document)
{
    if (document.hits.isEmpty() && document.problem.isEmpty())
        return;
    auto *item = new QTreeWidgetItem(&m_hits, {document.path});
    if (!document.problem.isEmpty())
        new QTreeWidgetItem(item, {texts::tr("Left out: %1").arg(document.problem)});
    for (const programs::Hit &hit : document.hits)
        new QTreeWidgetItem(item,
                            {QStringLiteral("…%1[%2]%3…").arg(hit.before, hit.found, hit.after)});
    item->setExpanded(true);
    m_hitCount += document.hits.size();
    if (!document.hits.isEmpty())
        m_found.append(document);
}

void ReplaceWindow::replaceAll()
{
    const doctor::JournalResult result = programs::replaceIn(m_found);
    if (result.outcome == Outcome::Applied) {
        m_number = result.number;
        m_undo.setEnabled(true);
        forgetHits();
        m_status.setText(texts::tr("All were replaced."));
        return;
    }
    m_status.setText(texts::tr("Nothing was changed: %1").arg(result.reason));
}

void ReplaceWindow::undo()
{
    const doctor::JournalResult result = programs::undoReplacing(m_number);
    const bool isUndone = result.outcome == Outcome::Undone;
    m_undo.setEnabled(!isUndone);
    forgetHits();
    m_status.setText(isUndone ? texts::tr("The replacement was undone.")
                              : texts::tr("Nothing was changed: %1").arg(result.reason));
}

} // namespace tools
