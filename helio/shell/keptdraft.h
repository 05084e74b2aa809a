#pragma once

#include <QJsonObject>
#include <QString>
#include <QThreadPool>
#include <QTimer>

#include <atomic>

namespace shell {

/// What the user has typed and not sent yet, in a file that nobody else may read. It is on the disk
/// about half a second after each key; the window does not wait for the disk.
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
    QJsonObject keepPicture(const QJsonObject &picture);

private:
    Q_DISABLE_COPY_MOVE(KeptDraft)

    void write();
    /// Writes in this thread what has not been written yet.
    void finish();
    void store(const QString &text);
    QString pictures() const;

    QString m_file;
    QString m_text;
    /// Keys come faster than a disk writes.
    QTimer m_delay;
    std::atomic<bool> m_isKept = true;
    /// Of one thread, which goes before what it uses.
    QThreadPool m_writer;
};

} // namespace shell
