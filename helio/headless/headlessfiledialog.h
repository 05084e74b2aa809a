#pragma once

#include <QList>
#include <QUrl>

#include <qpa/qplatformdialoghelper.h>

#include "helio/headless/unsaveddialogstate.h"

namespace helio {

/// A file dialog without a window, which DialogAnswers answers at once.
class HeadlessFileDialog : public QPlatformFileDialogHelper
{
public:
    void exec() override;
    bool show(Qt::WindowFlags flags, Qt::WindowModality modality, QWindow *parent) override;
    void hide() override;

    bool defaultNameFilterDisables() const override;
    void setDirectory(const QUrl &directory) override;
    QUrl directory() const override;
    void selectFile(const QUrl &file) override;
    QList<QUrl> selectedFiles() const override;
    void setFilter() override;
    void selectNameFilter(const QString &filter) override;
    QString selectedNameFilter() const override;

private:
    QUrl m_directory;
    QUrl m_chosen;
    /// Lives long enough: Qt saves the dialog's state before it destroys this object.
    UnsavedDialogState m_unsavedState;
};

} // namespace helio
