#include "helio/shell/filequestions.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QUrl>

#include "host/krt.h"
#include "texts/texts.h"

namespace {

QString newFile(const helio::FileQuestion &question)
{
    QFileDialog dialog(nullptr, texts::tr("Save File"), QDir::homePath());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    // The question about replacing a file is then asked for the whole name.
    dialog.setDefaultSuffix(question.suffix);
    dialog.selectFile(question.name);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.selectedFiles().value(0);
}

} // namespace

QString shell::askForFile(const helio::FileQuestion &question)
{
    if (question.kind == helio::FileQuestion::Kind::Save)
        return newFile(question);
    return QFileDialog::getOpenFileName(nullptr, texts::tr("Open File"), QDir::homePath(),
                                        question.filter);
}

bool shell::openFile(const QString &path)
{
    return krt::ksafe::KProcess::checkLocalFileSafe(path) &&
           QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}
