#include <QJsonDocument>

#include <cstdio>

#include "helio/ctl/eventprinter.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/unprivileged.h"

using ctl::EventPrinter;
using testsupport::PrivateHome;

namespace {

int complaints = 0;

void countComplaint(QtMsgType, const QMessageLogContext &, const QString &)
{
    ++complaints;
}

/// What @p print writes to standard output, in a process of its own.
template<typename Print>
QByteArray outputOf(Print print)
{
    const QString path = PrivateHome::current().path() + QStringLiteral("/output");
    const bool isPrinted = testsupport::holdsUnprivileged([&] {
        if (!std::freopen(QFile::encodeName(path).constData(), "w", stdout))
            return false;
        print();
        return true;
    });
    return isPrinted ? testsupport::readFile(path) : QByteArray("nothing could be printed");
}

QJsonObject sampleEvent()
{
    return {{QStringLiteral("type"), QStringLiteral("callback")},
            {QStringLiteral("result"), QStringLiteral("\u6587 \"\n")}};
}

} // namespace

/// How assistantctl prints events.
class EventPrinterTest : public QObject
{
    Q_OBJECT

private slots:
    void anEventIsALineThatIsThereAtOnce()
    {
        // The process ends without flushing its streams.
        QCOMPARE(outputOf([] {
                     const EventPrinter printer(false);
                     printer.print(sampleEvent());
                     printer.printWaited(true);
                 }),
                 QByteArray("{\"result\":\"\xe6\x96\x87 \\\"\\n\",\"type\":\"callback\"}\n"
                            "{\"timeout\":true,\"type\":\"waited\"}\n"));
    }

    void prettyEventsAreIndented()
    {
        const QByteArray output = outputOf([] { EventPrinter(true).print(sampleEvent()); });
        QVERIFY(output.count('\n') > 2);
        QCOMPARE(QJsonDocument::fromJson(output).object(), sampleEvent());
    }

    void anAnswerHasItsResultOnlyWhenTheCommandSetOne()
    {
        const QByteArray output = outputOf([] {
            const EventPrinter printer(false);
            const QString page = QStringLiteral("main");
            printer.printAnswer(7, page, QStringLiteral("a"),
                                {{QStringLiteral("result"), QJsonValue()}});
            printer.printAnswer({}, page, QStringLiteral("b"), {});
        });
        QCOMPARE(output, QByteArray("{\"command\":\"a\",\"id\":7,\"page\":\"main\","
                                    "\"result\":null,\"type\":\"answer\"}\n"
                                    "{\"command\":\"b\",\"id\":null,\"page\":\"main\","
                                    "\"type\":\"answer\"}\n"));
    }

    void lostEventsAreComplainedOfOnce()
    {
        QVERIFY(testsupport::holdsUnprivileged([] {
            if (!std::freopen("/dev/full", "w", stdout))
                return false;
            qInstallMessageHandler(countComplaint);
            const EventPrinter printer(false);
            for (int time = 0; time < 3; ++time)
                printer.print(sampleEvent());
            return complaints == 1;
        }));
    }
};

HEADLESS_TEST_MAIN(EventPrinterTest)
#include "tst_eventprinter.moc"
