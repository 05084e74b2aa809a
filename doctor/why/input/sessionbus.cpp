#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QUuid>

#include <cstring>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "doctor/model/descriptor.h"
#include "doctor/why/input/framework.h"

namespace doctor {

namespace {

constexpr int patience = 60; // milliseconds, for each of three answers
constexpr char managerName[] = "org.freedesktop.systemd1";

/// The socket's address; its length is 0 if @p address names none.
std::pair<sockaddr_un, socklen_t> socketOf(const QByteArray &address)
{
    sockaddr_un socket{};
    socket.sun_family = AF_UNIX;
    const bool isAbstract = address.startsWith("unix:abstract=");
    const QByteArray path = address.mid(address.indexOf('=') + 1).split(',').constFirst();
    const std::size_t size = static_cast<std::size_t>(path.size());
    if ((!isAbstract && !address.startsWith("unix:path=")) || size + 2 > sizeof socket.sun_path)
        return {socket, 0};
    std::memcpy(socket.sun_path + (isAbstract ? 1 : 0), path.constData(), size);
    return {socket, static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + size + 1)};
}

/// Whether somebody answers there at all: the library would wait for half a minute.
bool isAnswering(const QByteArray &address)
{
    const auto [name, length] = socketOf(address);
    const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (length == 0 || !socket.isOpen() ||
        ::connect(socket.number(), reinterpret_cast<const sockaddr *>(&name), length) != 0)
        return false;
    const QByteArray hello =
        QByteArray(1, '\0') + "AUTH EXTERNAL " + QByteArray::number(::geteuid()).toHex() + "\r\n";
    pollfd waiting{socket.number(), POLLIN, 0};
    char answer[3] = {};
    return ::send(socket.number(), hello.constData(), static_cast<std::size_t>(hello.size()),
                  MSG_NOSIGNAL) == hello.size() &&
           ::poll(&waiting, 1, patience) == 1 &&
           ::recv(socket.number(), answer, sizeof answer, 0) == 3 &&
           std::memcmp(answer, "OK ", 3) == 0;
}

std::optional<Environment> managerEnvironment(const QDBusConnection &bus)
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        QLatin1String(managerName), QStringLiteral("/org/freedesktop/systemd1"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question.setAutoStartService(false);
    question.setArguments(
        {QStringLiteral("org.freedesktop.systemd1.Manager"), QStringLiteral("Environment")});
    const QDBusReply<QDBusVariant> reply = bus.call(question, QDBus::Block, patience);
    if (!reply.isValid())
        return std::nullopt;
    Environment environment;
    const QStringList entries = reply.value().variant().toStringList();
    for (const QString &entry : entries) {
        const QByteArray bytes = entry.toUtf8();
        const int equals = bytes.indexOf('=');
        environment.insert(bytes.left(equals), bytes.mid(equals + 1));
    }
    return environment;
}

BusAnswer answerOf(const QDBusConnection &bus)
{
    BusAnswer answer;
    answer.isConnected = bus.isConnected();
    if (!answer.isConnected)
        return answer;
    bus.interface()->setTimeout(patience);
    const QDBusReply<QStringList> names = bus.interface()->registeredServiceNames();
    for (const QString &name : names.value()) {
        if (name.contains(QLatin1String("fcitx"), Qt::CaseInsensitive) ||
            name.contains(QLatin1String("ibus"), Qt::CaseInsensitive))
            answer.names.append(name.toUtf8());
        if (name == QLatin1String(managerName))
            answer.manager = managerEnvironment(bus);
    }
    return answer;
}

} // namespace

BusAnswer askBus(const QByteArray &address)
{
    if (!isAnswering(address))
        return {};
    const QString connection = QUuid::createUuid().toString();
    BusAnswer answer =
        answerOf(QDBusConnection::connectToBus(QString::fromUtf8(address), connection));
    QDBusConnection::disconnectFromBus(connection);
    return answer;
}

} // namespace doctor
