#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QTcpServer>

#include <functional>

namespace testsupport {

/// A request as it came over the wire.
struct WireRequest
{
    /// The first line, without its end.
    QByteArray line;
    /// One entry for each header line, in order; names in lower case.
    QList<QPair<QByteArray, QByteArray>> headers;
    QByteArray body;

    /// The value of the header of that name; null if there is none. Aborts the program if there are
    /// several.
    QByteArray header(const QByteArray &name) const;
};

/// An HTTP server on the loopback interface that answers with raw bytes and records its requests.
/// Runs in the test's event loop.
class LoopbackServer
{
public:
    /// Gives the bytes to answer with; the connection is closed after them.
    using Responder = std::function<QByteArray(const WireRequest &)>;

    explicit LoopbackServer(Responder responder);

    /// The address of a path, which starts with a slash.
    QString url(const QString &path = QStringLiteral("/")) const;

    /// The complete requests so far.
    const QList<WireRequest> &requests() const;

    /// A response with its length.
    static QByteArray response(const QByteArray &status, const QByteArray &body,
                               const QByteArray &headerLines = {});

private:
    void accept();
    void answer(QTcpSocket *socket, const QByteArray &received);

    Responder m_responder;
    QTcpServer m_server;
    QList<WireRequest> m_requests;
};

} // namespace testsupport
