#pragma once

#include "doctor/editors/keyeditor.h"

namespace doctor {

/// Edits JSON (RFC 8259). Of members with one name the last counts; removing removes all of them.
class JsonEditor final : public KeyEditor
{
public:
    /// A string's text; anything else as it is written.
    std::optional<FoundKey> find(const QByteArray &content, const QStringList &key) const override;
    /// Writes a string, or a number, true, false or null where one of these stood and the text is
    /// one.
    EditedContent set(const QByteArray &content, const QStringList &key,
                      const QString &value) const override;
    EditedContent remove(const QByteArray &content, const QStringList &key) const override;
};

} // namespace doctor
