#pragma once

#include "doctor/editors/content/content.h"
#include "doctor/editors/keyeditor.h"

#include <QByteArrayList>

namespace doctor {

/// A line of a file of sections, or several that its format reads as one.
struct SectionLine
{
    enum class Kind {
        Other,
        Header,
        Entry
    };

    Kind kind = Kind::Other;
    /// With indentation and line end.
    Span whole;
    /// What names the section or key.
    Span name;
    /// What a new value replaces, and with spaces behind it, which can be part of the value.
    Span value;
    Span spacedValue;
    /// Where a comment behind the value starts; whole.end if there is none.
    int comment = 0;
};

/// How one kind of files with sections is read and written. Names and values are given as they
/// stand in the file.
class SectionDialect
{
public:
    virtual ~SectionDialect() = default;
    /// Reads the line that starts at position. A sentence if it cannot be read, otherwise empty.
    virtual QString readLine(const QByteArray &content, int position, SectionLine &line) const = 0;
    /// True if a byte order mark or a key before the first header makes the file unreadable.
    virtual bool isStrict() const = 0;
    virtual bool isLineEnd(char character) const = 0;
    /// The lines before the first header have a null name.
    virtual bool isSection(const QByteArray &name, const QString &section) const = 0;
    virtual bool isKey(const QByteArray &name, const QString &key) const = 0;
    virtual QString decoded(const QByteArray &value) const = 0;
    /// Why the key or its value cannot be written; empty if they can.
    virtual QString writeProblem(const QStringList &key, const QString &value) const = 0;
    virtual QByteArray encodedSection(const QString &section) const = 0;
    virtual QByteArray encodedKey(const QString &key) const = 0;
    /// A value that replaces another stays of its kind where the text allows.
    virtual QByteArray encoded(const QString &value, const QByteArray &before) const = 0;
};

/// Edits files of sections with a key in a line. The last entry of a key counts; removing removes
/// all.
class SectionEditor final : public KeyEditor
{
public:
    explicit SectionEditor(const SectionDialect &dialect) : m_dialect(dialect) {}

    std::optional<FoundKey> find(const QByteArray &content, const QStringList &key) const override;
    EditedContent set(const QByteArray &content, const QStringList &key,
                      const QString &value) const override;
    EditedContent remove(const QByteArray &content, const QStringList &key) const override;

private:
    template<typename Visit>
    QString walk(const QByteArray &content, const QStringList &key, Visit visit) const;
    EditedContent withLines(const QByteArray &content, int position,
                            const QByteArrayList &lines) const;
    EditedContent added(const QByteArray &content, const QStringList &key, const QString &value,
                        std::optional<int> position) const;

    const SectionDialect &m_dialect;
};

} // namespace doctor
