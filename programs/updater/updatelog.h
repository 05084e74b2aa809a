#pragma once

#include <QString>

namespace programs {

/// The updater's log. Every user may write to its directory, so another user could set a trap: only
/// a regular file with a single name is opened, and no link is followed.
class UpdateLog
{
public:
    /// A larger log is emptied; in bytes.
    static constexpr qint64 largestSize = qint64(1024) * 1024;

    explicit UpdateLog(const QString &path);
    ~UpdateLog();

    bool isOpen() const { return m_descriptor >= 0; }
    /// Why it is not open, or why the last append failed.
    QString error() const { return m_error; }

    /// Appends one line with time and process; control characters become spaces.
    bool append(const QString &line);

private:
    Q_DISABLE_COPY_MOVE(UpdateLog)

    int openSafely(const QByteArray &path);
    bool isOwnKind();
    bool fail(const QString &reason);

    int m_descriptor = -1;
    QString m_error;
};

} // namespace programs
