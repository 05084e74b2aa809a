#pragma once

#include <QJsonObject>
#include <QString>
#include <QTimer>

namespace shell {

/// What the user has typed and not sent yet, in a file that nobody else may read.
class KeptDraft
{
public:
    explicit KeptDraft(const QString &file);
    /// Writes what has not been written yet.
    ~KeptDraft();

    /// See docs/host.md.
    QJsonObject read() const;
    QJsonObject keep(const QJsonObject &draft);
    /// Keeps a picture beside the draft for as long as there is one.
    QJsonObject keepPicture(const QJsonObject &picture) const;

private:
    Q_DISABLE_COPY_MOVE(KeptDraft)

    void write();
    QString pictures() const;

    QString m_file;
    QString m_text;
    /// Keys come faster than a disk writes.
    QTimer m_delay;
    bool m_isKept = true;
};

} // namespace shell
