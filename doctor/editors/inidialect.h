#pragma once

#include "doctor/editors/sectioneditor.h"

namespace doctor {

/// INI files as QSettings reads and writes them: values in quotes, escapes in values and names,
/// lines continued by a backslash, "[General]" for the keys without a section.
class IniDialect final : public SectionDialect
{
public:
    QString readLine(const QByteArray &content, int position, SectionLine &line) const override;
    bool isStrict() const override { return false; }
    bool isLineEnd(char character) const override;
    bool isSection(const QByteArray &name, const QString &section) const override;
    bool isKey(const QByteArray &name, const QString &key) const override;
    QString decoded(const QByteArray &value) const override;
    QString writeProblem(const QStringList &key, const QString &value) const override;
    QByteArray encodedSection(const QString &section) const override;
    QByteArray encodedKey(const QString &key) const override;
    QByteArray encoded(const QString &value, const QByteArray &before) const override;
};

} // namespace doctor
