#pragma once

#include "doctor/editors/content/content.h"
#include "doctor/editors/keyeditor.h"

#include <QVector>

namespace doctor {

EditedContent refused(const QString &problem);
/// The edits stand in the order of their spans, which do not overlap.
EditedContent edited(const QByteArray &content, const QVector<Edit> &edits);
/// Why the content or the key cannot be looked at; empty if they can.
QString inputProblem(const QByteArray &content, const QStringList &key);

} // namespace doctor
