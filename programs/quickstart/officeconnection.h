#pragma once

#include <QByteArray>
#include <QHash>
#include <QLocalSocket>

#include <optional>

#include <sys/types.h>

#include "doctor/machine/deadline.h"

namespace programs {

/// Calls methods of objects in a running LibreOffice, by its remote protocol (URP) on a socket that
/// it listens on. Objects are known by names that LibreOffice gives them; an empty name is none.
/// After the first failure all further calls fail.
class OfficeConnection
{
public:
    OfficeConnection(const QString &socketPath, const doctor::Deadline &deadline);

    /// The process of LibreOffice; 0 if that cannot be told.
    pid_t process() const;

    /// The object from which all others are reached: a com.sun.star.uno.XComponentContext.
    QByteArray context();
    /// The same object, of which methods of @p interface can be called; empty if it has none.
    QByteArray query(const QByteArray &object, const QByteArray &interface);

    /// A method by its number: those of the interfaces it derives from come first, beginning
    /// with 3.
    QByteArray objectFrom(const QByteArray &object, const QByteArray &interface, int method,
                          const QByteArray &arguments = {});
    std::optional<bool> truthFrom(const QByteArray &object, const QByteArray &interface,
                                  int method);

    /// Arguments of a call.
    static QByteArray text(const QByteArray &text);
    static QByteArray reference(const QByteArray &object);
    static QByteArray truths(const QVector<bool> &truths);

private:
    bool negotiate();
    /// What a method returned; nothing if it failed.
    std::optional<QByteArray> call(const QByteArray &object, const QByteArray &interface,
                                   int method, const QByteArray &arguments);
    bool send(const QByteArray &message);
    QByteArray receive();
    QByteArray bytes(int count);
    QByteArray objectIn(const QByteArray &returned, int position);

    QLocalSocket m_socket;
    doctor::Deadline m_deadline;
    bool m_isUsable = false;
    /// Names that LibreOffice has used before, which it then gives by number.
    QHash<int, QByteArray> m_names;
};

} // namespace programs
