#include "tests/support/shell/recordingcontainer.h"

#include <QJsonDocument>

namespace testsupport {

QJsonObject RecordingContainer::Call::answer() const
{
    const QByteArray text = base64 ? QByteArray::fromBase64(json.toLatin1()) : json.toUtf8();
    return QJsonDocument::fromJson(text).object();
}

void RecordingContainer::runCallback(const QString &callback, const QString &json, bool base64)
{
    calls.append({callback, json, base64});
}

} // namespace testsupport
