#include "doctor/editors/edits.h"

#include <algorithm>

#include "texts/texts.h"

namespace doctor {

EditedContent refused(const QString &problem)
{
    return {std::nullopt, problem};
}

EditedContent edited(const QByteArray &content, const QVector<Edit> &edits)
{
    qint64 size = content.size();
    for (const Edit &edit : edits)
        size += edit.text.size() - edit.span.size();
    if (size > maximumSize)
        return refused(texts::tr("The new content would be larger than 64 MiB."));
    QByteArray result;
    result.reserve(static_cast<int>(size));
    int position = 0;
    for (const Edit &edit : edits) {
        result.append(content.constData() + position, edit.span.begin - position);
        result.append(edit.text);
        position = edit.span.end;
    }
    result.append(content.constData() + position, content.size() - position);
    return {result, {}};
}

QString inputProblem(const QByteArray &content, const QStringList &key)
{
    if (content.size() > maximumSize)
        return texts::tr("The content is larger than 64 MiB.");
    if (key.isEmpty())
        return texts::tr("The key has no name.");
    if (key.size() > maximumDepth)
        return texts::tr("The key has more than 256 parts.");
    if (!std::all_of(key.begin(), key.end(), hasUtf8))
        return texts::tr("The key is not valid Unicode.");
    return {};
}

} // namespace doctor
