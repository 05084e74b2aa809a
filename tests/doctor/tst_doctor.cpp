#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include "doctor/doctor.h"

using namespace doctor;

namespace {

/// The three directories of check files, and a home directory that they can look at.
class Directories
{
public:
    Directories()
    {
        m_machine.environment = {{QStringLiteral("HOME"), m_directory.path()}};
        m_machine.user = geteuid();
        QDir(m_directory.path()).mkdir(QStringLiteral("shipped"));
    }

    QString path(const QString &name) const { return m_directory.filePath(name); }

    QString write(const QString &name, const QByteArray &content) const
    {
        const QString path = m_directory.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }

    void writeCheck(const char *file, const char *id, const QByteArray &text) const
    {
        write(QLatin1String(file), "{\"id\": \"" + QByteArray(id) +
                                       "\", \"title\": \"T\", \"look\": {\"file\": \"$HOME/x\", "
                                       "\"exists\": false}, \"finding\": {\"text\": \"" +
                                       text + "\"}}");
    }

    Doctor loaded() const
    {
        Doctor doctor(m_machine);
        doctor.load({m_directory.filePath(QStringLiteral("etc")),
                     m_directory.filePath(QStringLiteral("user")),
                     m_directory.filePath(QStringLiteral("shipped"))});
        return doctor;
    }

private:
    QTemporaryDir m_directory;
    Machine m_machine;
};

QStringList textsOf(const Doctor &doctor)
{
    QStringList texts;
    doctor.run({}, QStringLiteral("en"), [&texts](const CheckResult &result) {
        for (const Finding &finding : result.findings)
            texts.append(finding.text);
        return true;
    });
    texts.sort();
    return texts;
}

} // namespace

class TestDoctor : public QObject
{
    Q_OBJECT

private slots:
    void theAdministratorsCheckReplacesTheUsers();
    void aFileWithAMistakeLosesNothingOfTheOthers();
    void filesThatOthersCanChangeAreNotRead();
    void directoriesThatCannotBeReadAreNamed();
    void twoFilesOfOneDirectoryMayNotHaveOneId();
    void aHundredChecksEndWell();
    void aPlanIsMadeFromAFinding();
};

void TestDoctor::theAdministratorsCheckReplacesTheUsers()
{
    const Directories directories;
    directories.writeCheck("etc/a.json", "one", "administrator's");
    directories.writeCheck("user/a.json", "one", "user's");
    directories.writeCheck("user/b.json", "two", "user's two");
    directories.writeCheck("shipped/a.json", "two", "shipped");
    directories.writeCheck("shipped/c.json", "three", "shipped three");
    directories.write(QStringLiteral("etc/off.json"), R"({"id": "three", "disabled": true})");
    directories.write(QStringLiteral("etc/readme.txt"), "no check");
    const Doctor doctor = directories.loaded();
    QVERIFY(doctor.problems().isEmpty());
    QCOMPARE(textsOf(doctor),
             (QStringList{QStringLiteral("administrator's"), QStringLiteral("user's two")}));
}

void TestDoctor::aFileWithAMistakeLosesNothingOfTheOthers()
{
    const Directories directories;
    directories.writeCheck("user/a.json", "one", "one");
    directories.write(QStringLiteral("user/b.json"), "{\n  \"id\": \"x\",\n}");
    const Doctor doctor = directories.loaded();
    QCOMPARE(textsOf(doctor), QStringList(QStringLiteral("one")));
    QCOMPARE(doctor.problems().size(), 1);
    QCOMPARE(doctor.problems().first().mistake.line, 3);
}

void TestDoctor::filesThatOthersCanChangeAreNotRead()
{
    const Directories directories;
    directories.writeCheck("user/a.json", "one", "one");
    const QString path = directories.write(QStringLiteral("user/b.json"), "{}");
    chmod(QFile::encodeName(path).constData(), 0666);
    const Doctor doctor = directories.loaded();
    QCOMPARE(doctor.problems().size(), 1);
    QCOMPARE(doctor.problems().first().file, path);
    QVERIFY(doctor.problems().first().mistake.message.contains(QLatin1String("changed by others")));
}

void TestDoctor::directoriesThatCannotBeReadAreNamed()
{
    const Directories directories;
    const QString none = directories.path(QStringLiteral("shipped"));
    const QString file = directories.write(QStringLiteral("etc"), "a file");
    QVERIFY(QDir().rmdir(none));
    const Doctor doctor = directories.loaded();
    QCOMPARE(doctor.problems().size(), 2);
    QCOMPARE(doctor.problems().first().file, none);
    QCOMPARE(doctor.problems().last().file, file);
    QVERIFY(doctor.checks().isEmpty());
}

void TestDoctor::twoFilesOfOneDirectoryMayNotHaveOneId()
{
    const Directories directories;
    directories.writeCheck("user/a.json", "one", "first");
    directories.writeCheck("user/b.json", "one", "second");
    const Doctor doctor = directories.loaded();
    QCOMPARE(textsOf(doctor), QStringList(QStringLiteral("first")));
    QCOMPARE(doctor.problems().size(), 1);
}

/// Every kind of quick probe, a hundred checks in all.
void TestDoctor::aHundredChecksEndWell()
{
    const Directories directories;
    const QVector<QByteArray> looks{
        R"({"file": "/etc/*.conf", "size": {"over": "1 GiB"}})",
        R"({"ini": "/etc/os-release", "key": "ID", "value": "none"})",
        R"({"line": "/etc/passwd", "pattern": "^nobodyatall:", "present": true})",
        R"({"process": "nosuchprocess", "running": true})",
        R"({"package": "nosuchpackage", "installed": true})",
        R"({"machineMemory": true, "used": {"over": 100}})",
        R"({"mount": "$HOME", "type": "none"})",
        R"({"fileType": ["a.txt", "b.docx"], "mime": "none"})",
        R"({"diskSpace": "$HOME", "free": {"under": 1}})",
        R"({"font": "No Such Font", "installed": true})",
    };
    for (int i = 0; i < 100; ++i) {
        const QByteArray id = "check-" + QByteArray::number(i);
        directories.write(QStringLiteral("user/%1.json").arg(i),
                          "{\"id\": \"" + id + "\", \"title\": \"T\", \"look\": " +
                              looks.at(i % 10) + ", \"finding\": {\"text\": \"F\"}}");
    }
    const Doctor doctor = directories.loaded();
    QVERIFY(doctor.problems().isEmpty());
    int ended = 0;
    doctor.run({}, {}, [&ended](const CheckResult &result) {
        ended += result.outcome == CheckResult::Outcome::Ok ? 1 : 0;
        return true;
    });
    QCOMPARE(ended, 100);
}

void TestDoctor::aPlanIsMadeFromAFinding()
{
    const Directories directories;
    directories.write(QStringLiteral("broken"), "x");
    directories.write(QStringLiteral("user/a.json"),
                      R"({"id": "one", "title": "T", "look": {"file": "$HOME/bro*", "exists": true},
            "finding": {"text": "F"}, "repairs": [
              {"id": "aside", "title": "A", "steps": [{"aside": "{path}"}]},
              {"id": "never", "title": "N", "when": {"file": "{path}", "size": {"over": 5}},
               "steps": [{"remove": "{path}"}]}]})");
    const Doctor doctor = directories.loaded();
    Finding finding;
    doctor.run({QStringLiteral("one")}, {}, [&finding](const CheckResult &result) {
        finding = result.findings.value(0);
        return true;
    });
    QCOMPARE(finding.repairs, QStringList(QStringLiteral("aside")));
    const Plan plan = doctor.plan(finding, QStringLiteral("aside"));
    QCOMPARE(plan.changes.value(0).kind, Change::Kind::Move);
    QVERIFY(!doctor.plan(finding, QStringLiteral("other")).refusal.isEmpty());
}

QTEST_GUILESS_MAIN(TestDoctor)
#include "tst_doctor.moc"
