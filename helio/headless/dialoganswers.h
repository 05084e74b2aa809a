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

/// Answers file dialogs in place of the user.
class DialogAnswers : public QObject
{
    Q_OBJECT

public:
    static DialogAnswers &instance();

    /// Sets the paths chosen in the next dialogs, in order; what was left is dropped.
    void setChoices(const QStringList &paths);

    /// The path chosen in that dialog; empty when it is cancelled, for lack of a choice or
    /// because a file to open does not exist.
    QString answer(const FileDialogRequest &request);

signals:
    void answered(const helio::FileDialogRequest &request, const QString &chosen);

private:
    DialogAnswers() = default;

    QStringList m_choices;
};

} // namespace helio
