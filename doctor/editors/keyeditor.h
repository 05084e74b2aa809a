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
/// - Ini: section and key as QSettings reads them; "" and "General" both name the keys without a
/// section.
///   The last entry of a key counts.
/// - DesktopEntry: group and key as GKeyFile reads them, "Name[de]" for a translation. The last
/// entry counts.
/// - Json: names and array indexes from the outside in (RFC 8259). The last member of a name
/// counts. Text
///   stays a number, true, false or null where one of these stood and the text is one; otherwise it
///   becomes a string.
/// - Xml: element names from the root, each "name", "name[2]" or "name[@attribute=value]"; a last
/// part
///   "@attribute" names an attribute, otherwise the element's text is meant. The first element that
///   fits counts.
/// - Xcu: oor:path and property name of LibreOffice's registrymodifications.xcu. The last entry
/// counts. Everything but the key is byte for byte as before, also line ends, comments, order and a
/// missing last line end. Content that is not whole in its format, is larger than 64 MiB or nests
/// deeper than 256 levels is refused, and so is text that the format cannot hold; nothing throws.
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
    /// Removes all entries of the key, in Xml the one that counts. The content itself if there is
    /// none.
    virtual EditedContent remove(const QByteArray &content, const QStringList &key) const = 0;
};

const KeyEditor &keyEditor(Format format);

/// Sets a key of JSON to a number, true, false or null, also where a string stood or nothing.
EditedContent setBareJson(const QByteArray &content, const QStringList &key,
                          const QByteArray &value);

} // namespace doctor
