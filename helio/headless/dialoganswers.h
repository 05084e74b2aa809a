#pragma once

#include <QObject>
#include <QStringList>

namespace helio {

/// A file dialog that a plug-in shows.
struct FileDialogRequest
{
    bool isSave = false;
    QString caption;
    QString directory;
    QString name; ///< the suggested file name; empty when opening
    QStringList filters;
};

/// Chooses files in dialogs instead of the user.
class DialogAnswers : public QObject
{
    Q_OBJECT

public:
    static DialogAnswers &instance();

    /// Sets the paths for the next dialogs, in order; drops those not used yet.
    void setChoices(const QStringList &paths);

    /// The path chosen in a dialog. Empty if the dialog is cancelled: there is no choice left, it
    /// is a directory, or the file to open does not exist.
    QString answer(const FileDialogRequest &request);

signals:
    void answered(const helio::FileDialogRequest &request, const QString &chosen);

private:
    DialogAnswers() = default;

    QStringList m_choices;
};

} // namespace helio
