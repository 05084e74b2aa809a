#include "programs/quickstart/officeconnection.h"

#include <QtEndian>

#include <sys/socket.h>

namespace programs {

namespace {

/// Bits of a message's first byte.
enum Header : unsigned char {
    ManyBits = 0x80, ///< more than the number of a method follows
    Request = 0x40,
    NewType = 0x20,
    NewObject = 0x10,
    NewThread = 0x08,
    Exception = 0x20, ///< in a reply
};

/// Numbers of the kinds of types.
enum Type : unsigned char {
    Boolean = 2,
    Interface = 22,
    WithName = 0x80,
};

constexpr int headerBytes = 8;
constexpr int numberBytes = 2;
constexpr int largestMessage = 1 << 20;
constexpr int queryMethod = 0;
constexpr unsigned char longText = 0xff;

constexpr char rootObject[] = "StarOffice.ComponentContext";
constexpr char anyInterface[] = "com.sun.star.uno.XInterface";
constexpr char contextInterface[] = "com.sun.star.uno.XComponentContext";
constexpr char propertiesObject[] = "UrpProtocolProperties";
constexpr char propertiesThread[] = ".UrpProtocolPropertiesTid";
constexpr char ownThread[] = "office-assistant";

QByteArray byte(int value)
{
    return QByteArray(1, static_cast<char>(value));
}

QByteArray word(quint32 value)
{
    QByteArray result(sizeof value, '\0');
    qToBigEndian(value, result.data());
    return result;
}

quint32 wordAt(const QByteArray &data, int position)
{
    return qFromBigEndian<quint32>(data.constData() + position);
}

QByteArray counted(const QByteArray &content)
{
    const auto size = static_cast<quint32>(content.size());
    return (size < longText ? byte(static_cast<int>(size)) : byte(longText) + word(size)) + content;
}

/// A name that the other side need not remember.
QByteArray named(const QByteArray &name)
{
    return counted(name) + byte(0xff) + byte(0xff);
}

QByteArray typed(const QByteArray &interface)
{
    return byte(Interface | WithName) + byte(0xff) + byte(0xff) + counted(interface);
}

/// The text at @p position, which is moved behind it; cut off at the end of the data.
QByteArray readText(const QByteArray &data, int &position)
{
    if (position >= data.size())
        return {};
    quint32 size = static_cast<unsigned char>(data.at(position++));
    if (size == longText && position + int(sizeof size) <= data.size()) {
        size = wordAt(data, position);
        position += int(sizeof size);
    }
    const QByteArray text = data.mid(position, static_cast<int>(qMin(size, quint32(data.size()))));
    position += text.size();
    return text;
}

QByteArray reply(const QByteArray &result)
{
    return byte(ManyBits | NewThread) + named(propertiesThread) + result;
}

} // namespace

OfficeConnection::OfficeConnection(const QString &socketPath, const doctor::Deadline &deadline)
    : m_deadline(deadline)
{
    m_socket.connectToServer(socketPath);
    m_isUsable =
        m_socket.waitForConnected(static_cast<int>(m_deadline.left().count())) && negotiate();
}

/// LibreOffice asks first which properties the connection has: with a call's context, which is
/// empty in our calls.
bool OfficeConnection::negotiate()
{
    m_isUsable = true;
    return receive().contains(propertiesObject) && send(reply(word(1))) && !receive().isEmpty() &&
           send(reply({}));
}

pid_t OfficeConnection::process() const
{
    ucred peer = {};
    socklen_t size = sizeof peer;
    const int descriptor = static_cast<int>(m_socket.socketDescriptor());
    return ::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 ? peer.pid : 0;
}

QByteArray OfficeConnection::context()
{
    return query(query(rootObject, anyInterface), contextInterface);
}

QByteArray OfficeConnection::query(const QByteArray &object, const QByteArray &interface)
{
    const std::optional<QByteArray> any = call(object, anyInterface, queryMethod, typed(interface));
    const int type = any && !any->isEmpty() ? static_cast<unsigned char>(any->at(0)) : 0;
    if ((type & ~WithName) != Interface)
        return {};
    int position = 1 + numberBytes;
    if (type & WithName)
        readText(*any, position);
    return objectIn(*any, position);
}

QByteArray OfficeConnection::objectFrom(const QByteArray &object, const QByteArray &interface,
                                        int method, const QByteArray &arguments)
{
    const std::optional<QByteArray> returned = call(object, interface, method, arguments);
    return returned ? objectIn(*returned, 0) : QByteArray();
}

std::optional<bool> OfficeConnection::truthFrom(const QByteArray &object,
                                                const QByteArray &interface, int method)
{
    const std::optional<QByteArray> returned = call(object, interface, method, {});
    if (!returned || returned->size() != 1)
        return std::nullopt;
    return returned->at(0) != 0;
}

QByteArray OfficeConnection::text(const QByteArray &text)
{
    return counted(text);
}

QByteArray OfficeConnection::reference(const QByteArray &object)
{
    return named(object);
}

QByteArray OfficeConnection::truths(const QVector<bool> &truths)
{
    QByteArray sequence = byte(truths.size());
    for (const bool truth : truths)
        sequence += byte(Boolean) + byte(truth ? 1 : 0);
    return sequence;
}

std::optional<QByteArray> OfficeConnection::call(const QByteArray &object,
                                                 const QByteArray &interface, int method,
                                                 const QByteArray &arguments)
{
    const QByteArray message = byte(ManyBits | Request | NewType | NewObject | NewThread) +
                               byte(method) + typed(interface) + named(object) + named(ownThread) +
                               reference({}) + arguments;
    if (object.isEmpty() || !send(message))
        return std::nullopt;
    QByteArray answer = receive();
    // LibreOffice may also say that it no longer needs something; that is not answered.
    while (!answer.isEmpty() && (!(answer.at(0) & ManyBits) || (answer.at(0) & Request)))
        answer = receive();
    if (answer.isEmpty() || (answer.at(0) & Exception))
        return std::nullopt;
    int position = 1;
    if (answer.at(0) & NewThread) {
        readText(answer, position);
        position += numberBytes;
    }
    return answer.mid(position);
}

bool OfficeConnection::send(const QByteArray &message)
{
    if (!m_isUsable)
        return false;
    m_socket.write(word(static_cast<quint32>(message.size())) + word(1) + message);
    while (m_isUsable && m_socket.bytesToWrite() > 0)
        m_isUsable = m_socket.waitForBytesWritten(static_cast<int>(m_deadline.left().count()));
    return m_isUsable;
}

/// The next message; empty on failure.
QByteArray OfficeConnection::receive()
{
    const QByteArray header = bytes(headerBytes);
    if (header.isEmpty())
        return {};
    const quint32 size = wordAt(header, 0);
    m_isUsable = size <= largestMessage;
    return bytes(static_cast<int>(size));
}

QByteArray OfficeConnection::bytes(int count)
{
    while (m_isUsable && m_socket.bytesAvailable() < count)
        m_isUsable = m_socket.waitForReadyRead(static_cast<int>(m_deadline.left().count()));
    return m_isUsable ? m_socket.read(count) : QByteArray();
}

QByteArray OfficeConnection::objectIn(const QByteArray &returned, int position)
{
    const QByteArray name = readText(returned, position);
    if (position + numberBytes > returned.size())
        return {};
    const int number = qFromBigEndian<quint16>(returned.constData() + position);
    if (name.isEmpty())
        return m_names.value(number);
    return *m_names.insert(number, name);
}

} // namespace programs
