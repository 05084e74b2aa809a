#pragma once

#include "doctor/editors/keyeditor.h"

namespace doctor {

/// Edits attributes and text of XML. Of the elements that fit a part of the key, the first in the
/// document counts, and only that one is removed.
class XmlEditor final : public KeyEditor
{
public:
    /// The text that stands directly in the element.
    std::optional<FoundKey> find(const QByteArray &content, const QStringList &key) const override;
    /// Refuses an element with others in it. Comments between its text stay.
    EditedContent set(const QByteArray &content, const QStringList &key,
                      const QString &value) const override;
    /// An element goes with all that is in it.
    EditedContent remove(const QByteArray &content, const QStringList &key) const override;
};

} // namespace doctor
