#include <QDesktopServices>
#include <QFileInfo>
#include <QSignalSpy>

#include "helio/headless/desktopopener.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"

using helio::DesktopOpener;
using testsupport::FakePrograms;

namespace {

QUrl letter()
{
    return QUrl::fromLocalFile(QStringLiteral("/nowhere/a letter#1.txt"));
}

int complaints = 0;

void countComplaint(QtMsgType, const QMessageLogContext &, const QString &)
{
    ++complaints;
}

} // namespace

/// What happens to a file that the library opens when there is no window.
class DesktopOpenerTest : public QObject
{
    Q_OBJECT

private slots:
    void aFileIsOnlyReported()
    {
        const FakePrograms programs;
        programs.hideOthers();
        DesktopOpener opener;
        const QSignalSpy opened(&opener, &DesktopOpener::opened);
        // Looking for a viewer would print a warning.
        const QtMessageHandler usual = qInstallMessageHandler(countComplaint);
        const bool wasTaken = QDesktopServices::openUrl(letter());
        qInstallMessageHandler(usual);
        QVERIFY(wasTaken);
        QCOMPARE(complaints, 0);
        QCOMPARE(opened.count(), 1);
        QCOMPARE(opened.at(0), QVariantList{letter()});
    }

    void aFileIsReallyOpenedOnDemandByAViewerThatHoldsNoStream()
    {
        const FakePrograms programs;
        programs.add(
            QStringLiteral("xdg-open"),
            "exec 9> \"$HOME/part\"\n"
            "for n in 0 1 2; do link=$(readlink /proc/$$/fd/$n); echo \"$link\" >&9; done\n"
            "echo \"$#\" \"$@\" >&9\n"
            "mv \"$HOME/part\" \"$HOME/told\"");
        DesktopOpener opener;
        const QSignalSpy opened(&opener, &DesktopOpener::opened);
        opener.setOpensReally(true);
        QVERIFY(QDesktopServices::openUrl(letter()));
        QCOMPARE(opened.count(), 1);
        const QString told = testsupport::PrivateHome::current().path() + QStringLiteral("/told");
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(told), testsupport::longestWaitMs);
        QCOMPARE(testsupport::readFile(told),
                 "/dev/null\n/dev/null\n/dev/null\n1 " + letter().toEncoded() + '\n');
    }

    void aMissingViewerIsComplainedOf()
    {
        const FakePrograms programs;
        programs.hideOthers();
        DesktopOpener opener;
        opener.setOpensReally(true);
        QTest::ignoreMessage(QtWarningMsg, "cannot start xdg-open, nothing was opened");
        QVERIFY(QDesktopServices::openUrl(letter()));
    }
};

HEADLESS_TEST_MAIN(DesktopOpenerTest)
#include "tst_desktopopener.moc"
