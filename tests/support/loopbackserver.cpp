#include "tests/support/loopbackserver.h"

#include <QTcpSocket>

#include <memory>
#include <optional>

namespace testsupport {

namespace {

/// The request, once it is complete.
std::optional<WireRequest> parseRequest(const QByteArray &received)
{
    const int headEnd = received.indexOf("\r\n\r\n");
    if (headEnd < 0)
        return std::nullopt;
    WireRequest request;
    QByteArray head = received.left(headEnd);
    head.replace("\r\n", "\n");
    const QList<QByteArray> lines = head.split('\n');
    request.line = lines.first();
    for (int index = 1; index < lines.size(); ++index) {
        const int colon = lines.at(index).indexOf(':');
        request.headers.append(
            {lines.at(index).left(colon).toLower(), lines.at(index).mid(colon + 1).trimmed()});
    }
    request.body = received.mid(headEnd + 4);
    if (request.body.size() < request.header("content-length").toInt())
        return std::nullopt;
    return request;
}

} // namespace

QByteArray WireRequest::header(const QByteArray &name) const
{
    QByteArray found;
    for (const auto &header : headers) {
        if (header.first != name)
            continue;
        if (!found.isNull())
            qFatal("the header %s came twice", name.constData());
        found = header.second.isNull() ? QByteArray("") : header.second;
    }
    return found;
}

LoopbackServer::LoopbackServer(Responder responder) : m_responder(std::move(responder))
{
    if (!m_server.listen(QHostAddress::LocalHost))
        qFatal("no server: %s", qPrintable(m_server.errorString()));
    QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { accept(); });
}

QString LoopbackServer::url(const QString &path) const
{
    return QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path);
}

const QList<WireRequest> &LoopbackServer::requests() const
{
    return m_requests;
}

QByteArray LoopbackServer::response(const QByteArray &status, const QByteArray &body,
                                    const QByteArray &headerLines)
{
    return "HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\nConnection: close\r\n" + headerLines + "\r\n" + body;
}

void LoopbackServer::accept()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        auto received = std::make_shared<QByteArray>();
        QObject::connect(socket, &QTcpSocket::readyRead, &m_server, [this, socket, received] {
            *received += socket->readAll();
            answer(socket, *received);
        });
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }
}

void LoopbackServer::answer(QTcpSocket *socket, const QByteArray &received)
{
    const auto request = parseRequest(received);
    if (!request)
        return;
    m_requests.append(*request);
    socket->write(m_responder(*request));
    socket->disconnectFromHost();
}

} // namespace testsupport
