#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

#include "doctor/doctor.h"

using namespace doctor;

namespace {

constexpr char userName[] = "mira";
constexpr char home[] = "/home/mira";
/// Never the owner of what the test writes.
constexpr uid_t someoneElse = 4711;

/// The machine that a fixture describes, as a directory.
class FixtureMachine
{
public:
    explicit FixtureMachine(const QJsonObject &world)
    {
        m_machine.root = m_directory.path();
        // The files belong to whoever runs the test: to another user if the fixture says so.
        const bool isForeign = world.value(QStringLiteral("foreign")).toBool();
        m_machine.user = isForeign ? someoneElse : geteuid();
        m_machine.environment = {{QStringLiteral("HOME"), QLatin1String(home)},
                                 {QStringLiteral("USER"), QLatin1String(userName)},
                                 {QStringLiteral("SUITE_ROOT"), QStringLiteral("/opt/suite")}};
        const QJsonObject variables = world.value(QStringLiteral("environment")).toObject();
        for (auto entry = variables.begin(); entry != variables.end(); ++entry)
            m_machine.environment.insert(entry.key(), entry->toString());
        writeAccounts(world);
        if (world.value(QStringLiteral("libreoffice")).toBool())
            write(QStringLiteral("/usr/lib/libreoffice/program/bootstraprc"),
                  "[Bootstrap]\nProductKey=LibreOffice 7.4\n"
                  "UserInstallation=$SYSUSERCONFIG/libreoffice/4\n");
        const QJsonObject files = world.value(QStringLiteral("files")).toObject();
        for (auto entry = files.begin(); entry != files.end(); ++entry)
            writeFile(entry.key(), *entry);
        // Rights last: a directory without them takes no files.
        for (auto entry = files.begin(); entry != files.end(); ++entry)
            setMode(entry.key(), entry->toObject().value(QStringLiteral("mode")).toString());
        const QJsonObject links = world.value(QStringLiteral("links")).toObject();
        for (auto entry = links.begin(); entry != links.end(); ++entry) {
            const QString located = m_machine.located(entry.key());
            QDir().mkpath(QFileInfo(located).path());
            QFile::link(entry->toString(), located);
        }
        for (const QJsonValue &family : world.value(QStringLiteral("fonts")).toArray())
            writeFont(family.toString());
        writeProcesses(world.value(QStringLiteral("processes")).toArray());
        // Times last: what is written into a directory changes its own.
        for (auto entry = files.begin(); entry != files.end(); ++entry)
            setAge(entry.key(), entry->toObject().value(QStringLiteral("age")).toInt());
    }

    ~FixtureMachine()
    {
        for (const QString &path : qAsConst(m_closed))
            chmod(QFile::encodeName(path).constData(), 0700);
    }

    const Machine &machine() const { return m_machine; }

private:
    void writeAccounts(const QJsonObject &world)
    {
        // The account's number is never 0, so that no check is skipped because root runs the test.
        QByteArray accounts = "mira:x:1000:1000::/home/mira:/bin/sh\n";
        if (!world.value(QStringLiteral("nameless")).toBool())
            accounts += "other:x:" + QByteArray::number(geteuid()) + ":100::/home/other:/bin/sh\n";
        write(QStringLiteral("/etc/passwd"), accounts);
    }

    QString write(const QString &path, const QByteArray &content)
    {
        const QString located = m_machine.located(path);
        QDir().mkpath(QFileInfo(located).path());
        QFile file(located);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(located));
        return located;
    }

    /// A font of which nothing but the "name" table is there (ISO 14496-22).
    void writeFont(const QString &family)
    {
        QByteArray name;
        for (const QChar character : family)
            name += QByteArray(1, '\0') + character.toLatin1();
        const QByteArray length(1, static_cast<char>(name.size()));
        QByteArray font = QByteArray::fromHex("000100000001000000000000") + "name" +
                          QByteArray(4, '\0') + QByteArray::fromHex("0000001c") +
                          QByteArray(3, '\0') + QByteArray(1, static_cast<char>(18 + name.size()));
        font += QByteArray::fromHex("000000010012000300010409000100") + length +
                QByteArray(2, '\0') + name;
        write(QStringLiteral("/usr/share/fonts/%1.ttf").arg(family), font);
    }

    void writeFile(const QString &path, const QJsonValue &description)
    {
        if (description.isString()) {
            write(path, description.toString().toUtf8());
            return;
        }
        const QJsonObject file = description.toObject();
        if (file.value(QStringLiteral("directory")).toBool())
            QDir().mkpath(m_machine.located(path));
        else
            write(path, file.value(QStringLiteral("content")).toString().toUtf8());
        const int size = file.value(QStringLiteral("size")).toInt();
        if (size > 0)
            QFile::resize(m_machine.located(path), size);
    }

    void setMode(const QString &path, const QString &mode)
    {
        if (mode.isEmpty())
            return;
        const QString located = m_machine.located(path);
        chmod(QFile::encodeName(located).constData(), mode.toUInt(nullptr, 8));
        m_closed.append(located);
    }

    void setAge(const QString &path, int seconds)
    {
        if (seconds == 0)
            return;
        const time_t then = time(nullptr) - seconds;
        const utimbuf times{then, then};
        utime(QFile::encodeName(m_machine.located(path)).constData(), &times);
    }

    void writeProcesses(const QJsonArray &names)
    {
        int id = 100;
        for (const QJsonValue &name : names) {
            const QString directory = QStringLiteral("/proc/%1").arg(++id);
            write(directory + QStringLiteral("/stat"), QByteArray::number(id) + " (" +
                                                           name.toString().toUtf8() + ") S 1" +
                                                           QByteArray(" 0").repeated(30));
        }
    }

    QTemporaryDir m_directory;
    Machine m_machine;
    QStringList m_closed;
};

QJsonObject fixtureOf(const QString &check)
{
    const QDir directory(QStringLiteral(TEST_DATA_DIR "/doctor/fixtures"));
    for (const QString &name : directory.entryList({QStringLiteral("*.json")})) {
        QFile file(directory.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("cannot read %s", qPrintable(name));
        QJsonParseError error;
        const QJsonDocument fixtures = QJsonDocument::fromJson(file.readAll(), &error);
        if (fixtures.isNull())
            qFatal("%s: %s", qPrintable(name), qPrintable(error.errorString()));
        if (fixtures.object().contains(check))
            return fixtures.object().value(check).toObject();
    }
    return {};
}

const Doctor &shippedChecks()
{
    static const Doctor shipped = [] {
        Doctor doctor(thisMachine());
        doctor.load({{}, {}, QStringLiteral(TEST_DATA_DIR "/../doctor/checks")});
        return doctor;
    }();
    return shipped;
}

CheckResult resultIn(const QJsonObject &world, const QString &check)
{
    const FixtureMachine fixture(world);
    CheckResult only;
    runChecks({*shippedChecks().check(check)}, fixture.machine(), QStringLiteral("en_US.UTF-8"),
              [&only](const CheckResult &result) {
                  only = result;
                  return true;
              });
    return only;
}

} // namespace

/// Each shipped check has a fixture in which it finds something and one in which it finds nothing.
class TestShippedChecks : public QObject
{
    Q_OBJECT

private slots:
    void theFilesHaveNoMistake();
    void eachIsTranslated();
    void eachFindsWhatIsBroken_data();
    void eachFindsWhatIsBroken();
    void eachFindsNothingWhereAllIsWell_data();
    void eachFindsNothingWhereAllIsWell();
    void theyRunOnThisMachineWithoutFailing();
};

namespace {

void addChecks()
{
    QTest::addColumn<QString>("check");
    const Doctor &doctor = shippedChecks();
    for (const CheckDefinition &check : doctor.checks())
        QTest::newRow(qPrintable(check.id)) << check.id;
}

} // namespace

void TestShippedChecks::theFilesHaveNoMistake()
{
    const Doctor &doctor = shippedChecks();
    for (const FileProblem &problem : doctor.problems())
        qWarning().noquote() << problem.file << problem.mistake.line << problem.mistake.column
                             << problem.mistake.message;
    QVERIFY(doctor.problems().isEmpty());
    QVERIFY(doctor.checks().size() >= 20);
}

void TestShippedChecks::eachIsTranslated()
{
    const Doctor &doctor = shippedChecks();
    for (const CheckDefinition &check : doctor.checks()) {
        QVector<LocalText> texts{check.title, check.text};
        if (check.when)
            texts.append(check.skipped);
        for (const RepairDefinition &repair : check.repairs)
            texts.append(repair.title);
        for (const LocalText &text : qAsConst(texts)) {
            const QStringList languages = text.byLanguage.keys();
            QVERIFY2(languages.contains(QStringLiteral("en")) &&
                         languages.contains(QStringLiteral("zh_CN")),
                     qPrintable(check.id));
        }
    }
}

void TestShippedChecks::eachFindsWhatIsBroken_data()
{
    addChecks();
}

void TestShippedChecks::eachFindsWhatIsBroken()
{
    QFETCH(QString, check);
    const QJsonObject fixture = fixtureOf(check);
    const QJsonObject broken = fixture.value(QStringLiteral("broken")).toObject();
    QVERIFY2(!broken.isEmpty(), "there is no broken fixture");
    const CheckResult result = resultIn(broken, check);
    QVERIFY2(result.outcome == CheckResult::Outcome::Found, qPrintable(result.reason));
    QCOMPARE(result.findings.first().text, fixture.value(QStringLiteral("text")).toString());
    QVERIFY(!result.findings.first().text.contains(QLatin1Char('{')));
}

void TestShippedChecks::eachFindsNothingWhereAllIsWell_data()
{
    addChecks();
}

void TestShippedChecks::eachFindsNothingWhereAllIsWell()
{
    QFETCH(QString, check);
    const QJsonObject healthy = fixtureOf(check).value(QStringLiteral("healthy")).toObject();
    QVERIFY2(!healthy.isEmpty(), "there is no healthy fixture");
    const CheckResult result = resultIn(healthy, check);
    const QString text = result.findings.isEmpty() ? QString() : result.findings.first().text;
    QVERIFY2(result.outcome == CheckResult::Outcome::Ok, qPrintable(result.reason + text));
}

void TestShippedChecks::theyRunOnThisMachineWithoutFailing()
{
    const Doctor &doctor = shippedChecks();
    doctor.run({}, QStringLiteral("zh_CN"), [](const CheckResult &result) {
        if (result.outcome == CheckResult::Outcome::Failed)
            QTest::qFail(qPrintable(result.check + result.reason), __FILE__, __LINE__);
        return true;
    });
}

QTEST_GUILESS_MAIN(TestShippedChecks)
#include "tst_shippedchecks.moc"
