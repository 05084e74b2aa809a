#include "programs/screengrab/grabrun.h"

#include <QFile>
#include <QTimer>

#include "tests/support/lifeline.h"
#include "tests/support/shell/headlesstest.h"

namespace {

constexpr int longTimeoutMs = 30'000;

} // namespace

/// Running the screenshot program from the assistant.
class GrabRunTest : public QObject
{
    Q_OBJECT

private:
    static QString program(const QByteArray &body)
    {
        const QString path = testsupport::PrivateHome::current().writeFile(
            QStringLiteral("grab"), "#!/bin/sh\n" + body + '\n');
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }

private slots:
    void thePictureIsWhatTheProgramPrints()
    {
        const programs::GrabRun run =
            programs::runGrabProgram(program("echo '/home/u/图 1.png'"), longTimeoutMs);
        QCOMPARE(run.picture, QStringLiteral("/home/u/图 1.png"));
        QCOMPARE(run.reason, QString());
    }

    void aFailureGivesTheProgramsReason()
    {
        const programs::GrabRun run = programs::runGrabProgram(
            program("echo /half.png; echo 'no display' >&2; exit 1"), longTimeoutMs);
        QCOMPARE(run.picture, QString());
        QCOMPARE(run.reason, QStringLiteral("no display"));
    }

    void aMissingProgramIsNamed()
    {
        const QString missing = QStringLiteral("/nowhere/screengrab");
        const programs::GrabRun run = programs::runGrabProgram(missing, longTimeoutMs);
        QCOMPARE(run.picture, QString());
        QVERIFY2(run.reason.startsWith(missing), qPrintable(run.reason));
    }

    void aProgramThatHangsIsEnded()
    {
        testsupport::Lifeline lifeline;
        const programs::GrabRun run = programs::runGrabProgram(program("exec sleep 1000"), 500);
        QCOMPARE(run.picture, QString());
        QCOMPARE(run.reason, QStringLiteral("the desktop took too long"));
        QVERIFY(lifeline.areAllGone());
    }

    void theAssistantGoesOnMeanwhile()
    {
        // The program ends once the file exists; only a running event loop creates it.
        const QString sign = testsupport::PrivateHome::current().path() + QStringLiteral("/sign");
        QTimer::singleShot(0, this, [] {
            testsupport::PrivateHome::current().writeFile(QStringLiteral("sign"), {});
        });
        const programs::GrabRun run = programs::runGrabProgram(
            program("until [ -e '" + QFile::encodeName(sign) + "' ]; do sleep 0.01; done; echo x"),
            longTimeoutMs);
        QCOMPARE(run.picture, QStringLiteral("x"));
    }
};

HEADLESS_TEST_MAIN(GrabRunTest)
#include "tst_grabrun.moc"
