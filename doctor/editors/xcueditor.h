#pragma once

#include "doctor/editors/keyeditor.h"

namespace doctor {

/// Edits LibreOffice's registrymodifications.xcu. The last entry of a property counts, and removing
/// removes all; a later node that is replaced or removed takes its properties along. Values for
/// languages (xml:lang) and lists of <it> are left alone. LibreOffice reads nothing behind an item
/// that its schema does not allow; the schema is not known here.
class XcuEditor final : public KeyEditor
{
public:
    /// A value that is nil gives a null string.
    std::optional<FoundKey> find(const QByteArray &content, const QStringList &key) const override;
    EditedContent set(const QByteArray &content, const QStringList &key,
                      const QString &value) const override;
    EditedContent remove(const QByteArray &content, const QStringList &key) const override;
};

} // namespace doctor
