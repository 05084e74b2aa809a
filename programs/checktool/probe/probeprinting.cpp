#include <QCoreApplication>
#include <QJsonArray>

#include <memory>

#include <cups/cups.h>

#include "programs/checktool/machine/facts.h"
#include "programs/checktool/probe/probes.h"

namespace programs {

namespace {

constexpr int connectMs = 3000;
constexpr double answerSeconds = 3;

struct ConnectionCloser
{
    void operator()(http_t *connection) const { httpClose(connection); }
};
using Connection = std::unique_ptr<http_t, ConnectionCloser>;

struct AnswerDeleter
{
    void operator()(ipp_t *answer) const { ippDelete(answer); }
};
using Answer = std::unique_ptr<ipp_t, AnswerDeleter>;

QString serverAddress()
{
    const QString server = QString::fromLocal8Bit(cupsServer());
    return server.startsWith(QLatin1Char('/')) ? server
                                               : QStringLiteral("%1:%2").arg(server).arg(ippPort());
}

int giveUp(http_t *, void *)
{
    return 0;
}

Connection connectToServer()
{
    Connection connection(httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC,
                                       cupsEncryption(), 1, connectMs, nullptr));
    if (connection)
        httpSetTimeout(connection.get(), answerSeconds, giveUp, nullptr);
    return connection;
}

Answer askForPrinters(http_t *connection)
{
    static const char *const wanted[] = {"printer-name", "printer-state", "printer-state-reasons",
                                         "printer-is-accepting-jobs"};
    ipp_t *request = ippNewRequest(IPP_OP_CUPS_GET_PRINTERS);
    ippAddStrings(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", 4, nullptr,
                  wanted);
    // Takes ownership of the request.
    return Answer(cupsDoRequest(connection, request, "/"));
}

QJsonArray stateReasons(ipp_attribute_t *attribute)
{
    QJsonArray reasons;
    for (int n = 0; n < ippGetCount(attribute); ++n) {
        const QString reason = QString::fromUtf8(ippGetString(attribute, n, nullptr));
        if (reason != QLatin1String("none"))
            reasons.append(reason);
    }
    return reasons;
}

void readAttribute(ipp_attribute_t *attribute, QJsonObject *printer)
{
    const QLatin1String name(ippGetName(attribute));
    if (name == QLatin1String("printer-name"))
        printer->insert(QLatin1String(facts::name),
                        QString::fromUtf8(ippGetString(attribute, 0, nullptr)));
    else if (name == QLatin1String("printer-state"))
        printer->insert(QLatin1String(facts::isStopped),
                        ippGetInteger(attribute, 0) == IPP_PSTATE_STOPPED);
    else if (name == QLatin1String("printer-is-accepting-jobs"))
        printer->insert(QLatin1String(facts::isAccepting), ippGetBoolean(attribute, 0) != 0);
    else if (name == QLatin1String("printer-state-reasons"))
        printer->insert(QLatin1String(facts::reasons), stateReasons(attribute));
}

/// The attributes of a printer follow each other; one without a name separates printers.
QJsonArray readPrinters(ipp_t *answer)
{
    QJsonArray printers;
    QJsonObject printer;
    const auto finish = [&] {
        if (printer.contains(QLatin1String(facts::name)))
            printers.append(printer);
        printer = {};
    };
    for (ipp_attribute_t *attribute = ippFirstAttribute(answer); attribute;
         attribute = ippNextAttribute(answer)) {
        if (ippGetGroupTag(attribute) == IPP_TAG_PRINTER && ippGetName(attribute))
            readAttribute(attribute, &printer);
        else
            finish();
    }
    finish();
    return printers;
}

/// The user's default printer, which may not exist, else the server's.
QString defaultPrinter(http_t *connection)
{
    cups_dest_t *destination = cupsGetNamedDest(connection, nullptr, nullptr);
    QString name = QString::fromUtf8(destination ? destination->name : cupsGetDefault2(connection));
    cupsFreeDests(destination ? 1 : 0, destination);
    return name;
}

QJsonObject fault(const QString &text)
{
    return {{QLatin1String(facts::address), serverAddress()},
            {QLatin1String(facts::fault),
             text.isEmpty() ? QStringLiteral("there is no answer") : text}};
}

} // namespace

QJsonObject probePrinting(int &argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const Connection connection = connectToServer();
    if (!connection)
        return fault(QString::fromUtf8(cupsLastErrorString()));
    const Answer answer = askForPrinters(connection.get());
    // A server without printers answers "not found".
    const ipp_status_t status = answer ? ippGetStatusCode(answer.get()) : cupsLastError();
    if (!answer || (status > IPP_STATUS_OK_CONFLICTING && status != IPP_STATUS_ERROR_NOT_FOUND))
        return fault(QString::fromUtf8(cupsLastErrorString()));
    return {{QLatin1String(facts::address), serverAddress()},
            {QLatin1String(facts::defaultPrinter), defaultPrinter(connection.get())},
            {QLatin1String(facts::printers), readPrinters(answer.get())}};
}

} // namespace programs
