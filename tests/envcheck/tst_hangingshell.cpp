#include <QSemaphore>

#include <memory>

#include <unistd.h>

#include "envcheck/vyrenvcheckthread.h"
#include "host/krt.h"
#include "tests/envcheck/recordingcheckpage.h"
#include "tests/support/shell/headlesstest.h"

namespace {

QSemaphore started;

} // namespace

/// A shell that never reports the end of a program, in place of the one that the test is linked
/// with.
int krt::ksafe::KProcess::Execute(const QString &, const QStringList &)
{
    started.release();
    for (;;)
        ::pause();
}

/// The end of a process whose check cannot be ended through its tool.
class HangingShellTest : public QObject
{
    Q_OBJECT

private slots:
    static void theEndIsBoundedAllTheSame()
    {
        RecordingCheckPage page;
        auto thread = std::make_unique<OfficeAssiant::VyrEnvCheckThread>(page);
        thread->check({QStringLiteral("t"), QStringLiteral("vyr"), {}});
        started.acquire();
        // Returns, though the shell never does.
        thread.reset();
    }
};

HEADLESS_TEST_MAIN(HangingShellTest)
#include "tst_hangingshell.moc"
