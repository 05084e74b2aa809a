#include <sys/syscall.h>
#include <sys/utsname.h>
#include <unistd.h>

#include "info/kinfohelp.h"
#include "tests/support/shell/headlesstest.h"

namespace {

bool unameFails = false;

} // namespace

/// Replaces the C library's function, which practically never fails.
extern "C" __attribute__((visibility("default"))) int uname(utsname *names) noexcept
{
    return unameFails ? -1 : static_cast<int>(::syscall(SYS_uname, names));
}

/// The kernel probe when uname() fails.
class KernelProbeTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { unameFails = false; }

    void anEmptyKernelTextStillHasItsMarkersAndAnEmptyLine()
    {
        const QString path = testsupport::PrivateHome::current().path() + QStringLiteral("/report");
        unameFails = true;
        OfficeAssiant::KInfoHelp().writeSysInfoReport(
            path, {true, false, false, false, false, false, false});
        QCOMPARE(testsupport::readFile(path), QByteArray("************kernel-begin***********\r\n"
                                                         "\r\n"
                                                         "************kernel-end***********\r\n"));
    }

    void theEarlierTextIsKeptWhenTheSystemDoesNotTell()
    {
        OfficeAssiant::KInfoHelp info;
        const QString earlier = info.getKernelInfo();
        QVERIFY(!earlier.isEmpty());
        unameFails = true;
        QCOMPARE(info.getKernelInfo(), earlier);
    }

    void withoutAnEarlierTextItIsEmpty()
    {
        unameFails = true;
        QCOMPARE(OfficeAssiant::KInfoHelp().getKernelInfo(), QString());
    }
};

HEADLESS_TEST_MAIN(KernelProbeTest)
#include "tst_kernelprobe.moc"
