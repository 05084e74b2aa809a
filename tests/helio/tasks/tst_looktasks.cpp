#include <QDir>
#include <QJsonArray>

#include "doctor/machine/machine.h"
#include "helio/tasks/tasks.h"
#include "tests/helio/tasks/taskpage.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/loopbackserver.h"
#include "tests/support/privatehome.h"

using testsupport::FakePrograms;
using testsupport::LoopbackServer;
using testsupport::PrivateHome;
using testsupport::readFile;

namespace {

const QString request = QStringLiteral("task.request");
const QString preview = QStringLiteral("task.preview");

/// A machine in a directory, as far as the test has written it.
class PlantedMachine
{
public:
    void put(const QString &path, const QByteArray &content) const
    {
        QDir(m_root.path()).mkpath(QStringLiteral(".") + path.section(QLatin1Char('/'), 0, -2));
        QFile file(m_root.path() + path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QJsonObject picture(const QHash<QString, QString> &environment = {}) const
    {
        return helio::machinePicture({m_root.path(), environment, 0});
    }

private:
    QTemporaryDir m_root;
};

QJsonObject asked(const QString &url, const QJsonArray &headers = {})
{
    return {{QStringLiteral("method"), QStringLiteral("POST")},
            {QStringLiteral("url"), url},
            {QStringLiteral("headers"), headers},
            {QStringLiteral("body"), QStringLiteral("test Data\r\nend")}};
}

/// Writes a report with an environment to the file that the session's request chooses.
const QByteArray reporting = R"(read -r request
file=${request#*'"choose":["'}; file=${file%%'"'*}
edge='************'
printf '%s\r\n' "${edge}kernel-begin" A_TOKEN=kernel "${edge}kernel-end" "${edge}env-begin" \
    HOME=/h MY_TOKEN=abc 'second line' PATH=/bin more "${edge}env-end" > "$file"
echo '{"type":"answer","result":"success"}')";

} // namespace

class LookTasksTest : public QObject
{
    Q_OBJECT

private slots:
    void aMachineIsDescribed()
    {
        PlantedMachine machine;
        machine.put(QStringLiteral("/etc/os-release"), "ID=x\nPRETTY_NAME=\"Example Linux 7\"\n");
        machine.put(QStringLiteral("/sys/class/dmi/id/sys_vendor"), "Example\n");
        machine.put(QStringLiteral("/sys/class/dmi/id/product_name"), "Model 7\n");
        machine.put(QStringLiteral("/sys/class/drm/card0/device/vendor"), "0x8086\n");
        machine.put(QStringLiteral("/sys/class/drm/card0/device/device"), "0x5917\n");
        machine.put(
            QStringLiteral("/usr/share/misc/pci.ids"),
            "# comment\n1002  Other\n\t5917  Wrong\n8086  Example Corporation\n"
            "\t5916  Near\n\t5917  UHD Graphics\n\t\t1 2  sub\n8087  Next\n\t5917  Wrong\n");
        machine.put(QStringLiteral("/sys/class/drm/card0-DP-1/status"), "connected\n");
        machine.put(QStringLiteral("/sys/class/drm/card0-DP-1/modes"), "1920x1080\n800x600\n");
        machine.put(QStringLiteral("/sys/class/drm/card0-DP-1/edid"),
                    QByteArray(72, 'x') + QByteArray("\0\0\0\xFC\0Screen 27\n   ", 18) +
                        QByteArray(38, '\0'));
        machine.put(QStringLiteral("/sys/class/drm/card0-DP-2/status"), "disconnected\n");
        const QJsonObject picture =
            machine.picture({{QStringLiteral("XDG_CURRENT_DESKTOP"), QStringLiteral("KDE")},
                             {QStringLiteral("WAYLAND_DISPLAY"), QStringLiteral("wayland-0")},
                             {QStringLiteral("DISPLAY"), QStringLiteral(":0")},
                             {QStringLiteral("LANGUAGE"), QStringLiteral("zh_CN:en")},
                             {QStringLiteral("LANG"), QStringLiteral("zh_CN.UTF-8")}});
        QCOMPARE(word(picture, "distribution"), QStringLiteral("Example Linux 7"));
        QCOMPARE(word(picture, "model"), QStringLiteral("Example Model 7"));
        QCOMPARE(word(picture, "session"), QStringLiteral("wayland"));
        const QJsonObject card = picture[QStringLiteral("graphics")].toArray().at(0).toObject();
        QCOMPARE(word(card, "name"), QStringLiteral("Example Corporation UHD Graphics"));
        const QJsonArray screens = picture[QStringLiteral("screens")].toArray();
        QCOMPARE(screens.size(), 1);
        QCOMPARE(word(screens.at(0).toObject(), "name"), QStringLiteral("Screen 27"));
        QCOMPARE(word(screens.at(0).toObject(), "output"), QStringLiteral("DP-1"));
        QCOMPARE(word(screens.at(0).toObject(), "mode"), QStringLiteral("1920x1080"));
        QCOMPARE(picture[QStringLiteral("languages")].toArray(),
                 QJsonArray({QStringLiteral("zh_CN"), QStringLiteral("en")}));
    }

    void disksAreToldOnceAndSharesAreNotAsked()
    {
        PlantedMachine machine;
        machine.put(QStringLiteral("/a b/file"), "");
        machine.put(QStringLiteral("/proc/self/mounts"),
                    "/dev/sda1 /a\\040b ext4 rw 0 0\n/dev/sda1 / ext4 rw 0 0\n"
                    "/dev/loop1 / squashfs ro 0 0\nserver:/home / nfs4 rw 0 0\n");
        const QJsonArray disks = machine.picture()[QStringLiteral("disks")].toArray();
        QCOMPARE(disks.size(), 1);
        QCOMPARE(word(disks.at(0).toObject(), "place"), QStringLiteral("/a b"));
        QVERIFY(disks.at(0)[QStringLiteral("total")].toDouble() > 0);
    }

    void anEmptyMachineIsNoFailure()
    {
        const QJsonObject picture = PlantedMachine().picture();
        QCOMPARE(word(picture, "model"), QString());
        QVERIFY(picture[QStringLiteral("disks")].toArray().isEmpty());
        QCOMPARE(word(picture, "session"), QString());
    }

    void secretsStayOutOfTheReport()
    {
        TaskPage page;
        page.program(QStringLiteral("assistantctl"), reporting);
        page.chosen = PrivateHome::current().path() + QStringLiteral("/report.txt");
        const QString report = QStringLiteral("task.report");
        QCOMPARE(word(page.run(report), "end"), QStringLiteral("done"));
        const QByteArray hidden = readFile(page.chosen);
        QVERIFY(hidden.contains("HOME=/h\r\nMY_TOKEN=(hidden)\r\nPATH=/bin\r\nmore\r\n"));
        QVERIFY(hidden.contains("A_TOKEN=kernel\r\n"));
        QVERIFY(hidden.contains("suite-end"));
        const QJsonObject wholly{{QStringLiteral("secrets"), true}};
        QCOMPARE(word(page.run(report, wholly), "end"), QStringLiteral("done"));
        QVERIFY(readFile(page.chosen).contains("MY_TOKEN=abc\r\nsecond line\r\n"));
    }

    void aRequestIsSentAsGivenAndTimed()
    {
        const LoopbackServer server([](const auto &) {
            return LoopbackServer::response("404 Gone", "no such <b>page", "X-Answer: 7\r\n");
        });
        TaskPage page;
        const QJsonArray headers{
            QJsonObject{{QStringLiteral("name"), QStringLiteral("X-Odd")},
                        {QStringLiteral("value"), QStringLiteral("a \"b\" \\c")}}};
        const QJsonObject result = page.run(request, asked(server.url(), headers));
        QCOMPARE(word(result, "end"), QStringLiteral("done"));
        QCOMPARE(server.requests().size(), 1);
        const auto sent = server.requests().first();
        QVERIFY(sent.line.startsWith("POST / "));
        QCOMPARE(sent.header("x-odd"), QByteArray("a \"b\" \\c"));
        QCOMPARE(sent.body, QByteArray("test Data\r\nend"));
        QCOMPARE(result[QStringLiteral("status")].toInt(), 404);
        QCOMPARE(word(result, "body"), QStringLiteral("no such <b>page"));
        QCOMPARE(result[QStringLiteral("size")].toInt(), 15);
        QCOMPARE(word(result, "problem"), QString());
        const QJsonArray answered = result[QStringLiteral("headers")].toArray();
        const QJsonObject header{{QStringLiteral("name"), QStringLiteral("X-Answer")},
                                 {QStringLiteral("value"), QStringLiteral("7")}};
        QVERIFY(answered.contains(header));
        const QJsonObject times = result[QStringLiteral("times")].toObject();
        QVERIFY(times[QStringLiteral("whole")].toDouble() > 0);
        QVERIFY(times[QStringLiteral("whole")].toDouble() >=
                times[QStringLiteral("connect")].toDouble());
    }

    void aServerThatIsNotThereIsNoAnswer()
    {
        TaskPage page;
        const QJsonObject result = page.run(request, asked(QStringLiteral("http://127.0.0.1:9/")));
        QCOMPARE(word(result, "end"), QStringLiteral("done"));
        QCOMPARE(result[QStringLiteral("status")].toInt(), 0);
        QVERIFY(!word(result, "problem").isEmpty());
    }

    void noFileIsReadForAnAddress()
    {
        const QString secret =
            PrivateHome::current().writeFile(QStringLiteral("secret"), "not to be seen");
        TaskPage page;
        const QJsonObject result = page.run(request, asked(QStringLiteral("file://") + secret));
        QVERIFY(!word(result, "body").contains(QLatin1String("not to be seen")));
    }

    void onlyWhereTheProgramIsThereRequestsAreTimed()
    {
        TaskPage page;
        page.program(QStringLiteral("assistantctl"), "exit 0");
        const FakePrograms programs;
        programs.hideOthers();
        QVERIFY(!page.operations.names().contains(request));
        programs.add(QStringLiteral("curl"), "exit 0");
        QVERIFY(page.operations.names().contains(request));
    }

    void aFileIsPreviewedByItsContent()
    {
        const QByteArray png = "\x89PNG and so on";
        const PrivateHome &home = PrivateHome::current();
        TaskPage page;
        const auto look = [&page](const QString &path) {
            return page.run(preview, {{QStringLiteral("path"), path}});
        };
        const QJsonObject picture = look(home.writeFile(QStringLiteral("a.txt"), png));
        QCOMPARE(word(picture, "picture"),
                 QStringLiteral("data:image/png;base64,") + QString::fromLatin1(png.toBase64()));
        QCOMPARE(picture[QStringLiteral("size")].toInt(), png.size());
        QCOMPARE(word(look(home.writeFile(QStringLiteral("b"), "two\nlines")), "text"),
                 QStringLiteral("two\nlines"));
        const QJsonObject binary =
            look(home.writeFile(QStringLiteral("c.png"), QByteArray("\0\1", 2)));
        QCOMPARE(word(binary, "text") + word(binary, "picture"), QString());
        QVERIFY(!look(QStringLiteral("/nowhere"))[QStringLiteral("exists")].toBool());
    }

    void aDocumentOfPagesIsPreviewedByItsFirst()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("pdftoppm"),
                     "for target; do :; done; printf '\\211PNG page' > \"$target.png\"");
        const QString file =
            PrivateHome::current().writeFile(QStringLiteral("a b.pdf"), "%PDF-1.7 and so on");
        TaskPage page;
        const QJsonObject result = page.run(preview, {{QStringLiteral("path"), file}});
        QCOMPARE(word(result, "picture"),
                 QStringLiteral("data:image/png;base64,") +
                     QString::fromLatin1(QByteArray("\x89PNG page").toBase64()));
    }
};

int main(int argc, char *argv[])
{
    const PrivateHome home;
    QCoreApplication application(argc, argv);
    LookTasksTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_looktasks.moc"
