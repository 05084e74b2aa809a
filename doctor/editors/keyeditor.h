#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace doctor {

/// The formats whose keys can be read and edited.
enum class Format {
    Ini,
    DesktopEntry,
    Json,
    Xml,
    Xcu
};

/// A key's value and the line, from 1, on which it stands.
struct FoundKey
{
    QString value;
    int line = 0;
};

/// New content, or why there is none.
struct EditedContent
{
    std::optional<QByteArray> content;
    QString problem;
};

/// Reads and edits keys of one format. A key is a path, whose parts depend on the format:
/// - Ini: section and key; the section before the first header is "". Last entry of a key wins.
/// - DesktopEntry: group and key, "Name[de]" for a translation; as in the Desktop Entry
/// Specification.
/// - Json: names and array indexes from the outside in (RFC 8259).
/// - Xml: element names from the root, each "name", "name[2]" or "name[@attribute=value]"; a last
/// part
///   "@attribute" names an attribute, otherwise the element's text is meant.
/// - Xcu: oor:path and property name of LibreOffice's registrymodifications.xcu.
/// Everything but the key is byte for byte as before, also line ends, comments, order and a missing
/// last line end. Content that is not whole in its format, is larger than 64 MiB or nests deeper
/// than 256 levels is refused; nothing throws.
class KeyEditor
{
public:
    virtual ~KeyEditor() = default;
    /// Nothing if the key is not there or the content cannot be read.
    virtual std::optional<FoundKey> find(const QByteArray &content,
                                         const QStringList &key) const = 0;
    /// Adds the key where it is missing, with its section.
    virtual EditedContent set(const QByteArray &content, const QStringList &key,
                              const QString &value) const = 0;
    /// The content itself if the key is not there.
    virtual EditedContent remove(const QByteArray &content, const QStringList &key) const = 0;
};

const KeyEditor &keyEditor(Format format);

} // namespace doctor
