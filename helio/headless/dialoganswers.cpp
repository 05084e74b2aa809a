#include "helio/headless/dialoganswers.h"

#include <QFileInfo>

namespace helio {

DialogAnswers &DialogAnswers::instance()
{
    static DialogAnswers answers;
    return answers;
}

void DialogAnswers::setChoices(const QStringList &paths)
{
    m_choices = paths;
}

QString DialogAnswers::answer(const FileDialogRequest &request)
{
    QString chosen = m_choices.isEmpty() ? QString() : m_choices.takeFirst();
    if (!chosen.isEmpty())
        chosen = QFileInfo(chosen).absoluteFilePath();
    const QFileInfo file(chosen);
    if (file.isDir() || (!request.isSave && !file.exists()))
        chosen.clear();
    emit answered(request, chosen);
    return chosen;
}

} // namespace helio
