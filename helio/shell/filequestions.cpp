#include "helio/shell/filequestions.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QMimeDatabase>
#include <QUrl>

#include "host/krt.h"
#include "texts/texts.h"

namespace {

/// Tells kinds of files by their names. Qt 6 would read each file of a directory, and some, as in
/// /proc or on a share whose server is away, never answer.
class KindsByName : public QFileIconProvider
{
public:
    QString type(const QFileInfo &file) const override
    {
        if (!file.isFile())
            return QFileIconProvider::type(file);
        return QMimeDatabase().mimeTypeForFile(file, QMimeDatabase::MatchExtension).comment();
    }
};

QString chosenFile(QFileDialog &dialog)
{
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

QString newFile(const helio::FileQuestion &question)
{
    KindsByName kinds;
    QFileDialog dialog(nullptr, texts::tr("Save File"), QDir::homePath());
    dialog.setIconProvider(&kinds);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    // The question about replacing a file is then asked for the whole name.
    dialog.setDefaultSuffix(question.suffix);
    dialog.selectFile(question.name);
    return chosenFile(dialog);
}

} // namespace

QString shell::askForFile(const helio::FileQuestion &question)
{
    if (question.kind == helio::FileQuestion::Kind::Save)
        return newFile(question);
    KindsByName kinds;
    QFileDialog dialog(nullptr, texts::tr("Open File"), QDir::homePath(), question.filter);
    dialog.setIconProvider(&kinds);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return chosenFile(dialog);
}

bool shell::openFile(const QString &path)
{
    return krt::ksafe::KProcess::checkLocalFileSafe(path) &&
           QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}
