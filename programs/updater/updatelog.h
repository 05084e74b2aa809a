#pragma once

#include <QString>

namespace standin {

/// The updater's log. Its directory is everybody's, so whatever lies at its place may be a trap of
/// another user: only a plain file that has no other name is written to, and no link is followed.
class UpdateLog
{
public:
    /// A log that has grown beyond this starts anew, in bytes.
    static constexpr qint64 largestSize = qint64(1024) * 1024;

    explicit UpdateLog(const QString &path);
    ~UpdateLog();

    bool isOpen() const { return m_descriptor >= 0; }
    /// Why it is not open, or what went wrong since.
    QString error() const { return m_error; }

    /// Appends one line, which tells time and process; control characters in it become blanks.
    bool append(const QString &line);

private:
    Q_DISABLE_COPY_MOVE(UpdateLog)

    int openSafely(const QByteArray &path);
    bool isOwnKind();
    bool fail(const QString &reason);

    int m_descriptor = -1;
    QString m_error;
};

} // namespace standin
