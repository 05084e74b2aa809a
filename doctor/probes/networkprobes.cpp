#include <QRegularExpression>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <utility>

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "doctor/probes/kinds.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr std::chrono::milliseconds usualLimit(1000);
constexpr double highestPort = 65535;

class Socket
{
public:
    explicit Socket(int descriptor) : m_descriptor(descriptor) {}
    Socket(Socket &&other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    ~Socket()
    {
        if (m_descriptor >= 0)
            close(m_descriptor);
    }
    Q_DISABLE_COPY(Socket)

    int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

bool isReady(int descriptor, short events, const Deadline &deadline)
{
    pollfd entry{descriptor, events, 0};
    return poll(&entry, 1, static_cast<int>(deadline.left().count())) == 1;
}

/// Why there is no connection; empty if there is one.
QString connectProblem(const Socket &socket, const addrinfo &address, const Deadline &deadline)
{
    if (socket.descriptor() < 0)
        return QString::fromLocal8Bit(std::strerror(errno));
    if (connect(socket.descriptor(), address.ai_addr, address.ai_addrlen) == 0)
        return {};
    if (errno != EINPROGRESS)
        return QString::fromLocal8Bit(std::strerror(errno));
    if (!isReady(socket.descriptor(), POLLOUT, deadline))
        return texts::tr("no answer in time");
    int error = 0;
    socklen_t length = sizeof error;
    getsockopt(socket.descriptor(), SOL_SOCKET, SO_ERROR, &error, &length);
    return error == 0 ? QString() : QString::fromLocal8Bit(std::strerror(error));
}

struct Connection
{
    Socket socket{-1};
    QString problem;
};

Connection connected(const QString &host, int port, const Deadline &deadline)
{
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    const int error = getaddrinfo(host.toUtf8().constData(), QByteArray::number(port).constData(),
                                  &hints, &found);
    if (error != 0)
        return {Socket(-1), QString::fromLocal8Bit(gai_strerror(error))};
    const std::unique_ptr<addrinfo, void (*)(addrinfo *)> addresses(found, &freeaddrinfo);
    QString problem = texts::tr("no address");
    for (const addrinfo *address = found; address && !deadline.isOver();
         address = address->ai_next) {
        Socket candidate(socket(address->ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC,
                                address->ai_protocol));
        problem = connectProblem(candidate, *address, deadline);
        if (problem.isEmpty())
            return {std::move(candidate), {}};
    }
    return {Socket(-1), problem};
}

Observed lookAtPort(const Arguments &arguments, const Looking &looking)
{
    const double port = arguments.number("port", 0);
    const QString host = arguments.text("host", "localhost");
    if (port < 1 || port > highestPort)
        return {{}, texts::tr("%1 is not a port").arg(port)};
    const Deadline deadline = looking.deadline.atMost(arguments.duration("within", usualLimit));
    const Connection connection = connected(host, static_cast<int>(port), deadline);
    Observation seen;
    seen.values = {
        {QStringLiteral("reachable"), Value::ofFlag(connection.problem.isEmpty())},
        {QStringLiteral("reason"), Value::ofText(connection.problem)},
        {QStringLiteral("address"),
         Value::ofText(host + QLatin1Char(':') + QString::number(static_cast<int>(port)))}};
    return {{seen}, {}};
}

/// The status of the answer to a HEAD request; 0 if there is none in time.
int httpStatus(const Socket &socket, const QString &host, const QString &path,
               const Deadline &deadline)
{
    const QByteArray request = "HEAD " + path.toUtf8() + " HTTP/1.1\r\nHost: " + host.toUtf8() +
                               "\r\nUser-Agent: office-assistant\r\nConnection: close\r\n\r\n";
    if (send(socket.descriptor(), request.constData(), static_cast<std::size_t>(request.size()),
             MSG_NOSIGNAL) != request.size())
        return 0;
    QByteArray answer;
    constexpr int statusLine = 12; // "HTTP/1.1 200"
    while (answer.size() < statusLine && isReady(socket.descriptor(), POLLIN, deadline)) {
        std::array<char, 64> piece;
        const ssize_t count = recv(socket.descriptor(), piece.data(), piece.size(), 0);
        if (count <= 0)
            break;
        answer.append(piece.data(), static_cast<int>(count));
    }
    return answer.startsWith("HTTP/1.") ? answer.mid(9, 3).toInt() : 0;
}

Observed lookAtUrl(const Arguments &arguments, const Looking &looking)
{
    static const QRegularExpression form(QStringLiteral(
        "^(https?)://([A-Za-z0-9.-]+|\\[[0-9A-Fa-f:]+\\])(?::(\\d{1,5}))?(/[!-~]*)?$"));
    const QString url = arguments.text("url");
    const QRegularExpressionMatch match = form.match(url);
    if (!match.hasMatch())
        return {{}, texts::tr("\"%1\" is not an http or https address").arg(url)};
    const bool isPlain = match.captured(1) == QLatin1String("http");
    const int port = match.capturedLength(3) > 0 ? match.captured(3).toInt() : isPlain ? 80 : 443;
    QString host = match.captured(2);
    if (host.startsWith(QLatin1Char('[')))
        host = host.mid(1, host.size() - 2);
    const Deadline deadline = looking.deadline.atMost(arguments.duration("within", usualLimit));
    const Connection connection = connected(host, port, deadline);
    Observation seen;
    seen.values = {{QStringLiteral("address"), Value::ofText(url)},
                   {QStringLiteral("reachable"), Value::ofFlag(connection.problem.isEmpty())},
                   {QStringLiteral("reason"), Value::ofText(connection.problem)}};
    if (connection.problem.isEmpty() && isPlain) {
        const QString path = match.capturedLength(4) > 0 ? match.captured(4) : QStringLiteral("/");
        const int status = httpStatus(connection.socket, match.captured(2), path, deadline);
        seen.values.insert(QStringLiteral("status"), Value::ofNumber(status));
    }
    return {{seen}, {}};
}

constexpr Parameter portParameters[] = {{"port", ParameterType::Number, true},
                                        {"host", ParameterType::Text},
                                        {"within", ParameterType::Duration}};
constexpr ProbeValue portValues[] = {
    {"address", ValueType::Text}, {"reachable", ValueType::Flag}, {"reason", ValueType::Text}};
constexpr Parameter urlParameters[] = {{"url", ParameterType::Text, true},
                                       {"within", ParameterType::Duration}};
constexpr ProbeValue urlValues[] = {{"address", ValueType::Text},
                                    {"reachable", ValueType::Flag},
                                    {"reason", ValueType::Text},
                                    {"status", ValueType::Number}};

} // namespace

const ProbeKind portKind{"port", portParameters, portValues, &lookAtPort};
const ProbeKind urlKind{"url", urlParameters, urlValues, &lookAtUrl};

} // namespace doctor
