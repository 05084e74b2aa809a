#pragma once

#include "doctor/editors/sectioneditor.h"

namespace doctor {

/// Desktop entries and files like them (mimeapps.list, .directory, GLib's key files) as GKeyFile
/// reads them: text is UTF-8, a value ends with its line, a line that is neither comment, group nor
/// entry makes the whole file unreadable.
class DesktopDialect final : public SectionDialect
{
public:
    QString readLine(const QByteArray &content, int position, SectionLine &line) const override;
    bool isStrict() const override { return true; }
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
