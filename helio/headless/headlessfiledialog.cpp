#include "helio/headless/headlessfiledialog.h"

#include "helio/headless/dialoganswers.h"

namespace helio {

void HeadlessFileDialog::exec()
{
    FileDialogRequest request;
    request.isSave = options()->acceptMode() == QFileDialogOptions::AcceptSave;
    request.caption = options()->windowTitle();
    request.directory = options()->initialDirectory().toLocalFile();
    if (request.isSave)
        request.name = options()->initiallySelectedFiles().value(0).fileName();
    if (!options()->useDefaultNameFilters())
        request.filters = options()->nameFilters();

    const QString chosen = DialogAnswers::instance().answer(request);
    if (chosen.isEmpty()) {
        emit reject();
        return;
    }
    m_chosen = QUrl::fromLocalFile(chosen);
    emit accept();
}

bool HeadlessFileDialog::show(Qt::WindowFlags, Qt::WindowModality, QWindow *)
{
    return true;
}

void HeadlessFileDialog::hide() {}

bool HeadlessFileDialog::defaultNameFilterDisables() const
{
    return false;
}

void HeadlessFileDialog::setDirectory(const QUrl &directory)
{
    m_directory = directory;
}

QUrl HeadlessFileDialog::directory() const
{
    return m_directory;
}

void HeadlessFileDialog::selectFile(const QUrl &) {}

QList<QUrl> HeadlessFileDialog::selectedFiles() const
{
    return m_chosen.isEmpty() ? QList<QUrl>() : QList<QUrl>{m_chosen};
}

void HeadlessFileDialog::setFilter() {}

void HeadlessFileDialog::selectNameFilter(const QString &) {}

QString HeadlessFileDialog::selectedNameFilter() const
{
    return {};
}

} // namespace helio
