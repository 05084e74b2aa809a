#include <QCoreApplication>
#include <QDBusConnection>
#include <QUrl>

#include <cstdio>

#include "tests/programs/screengrab/fakeportal.h"

/// A portal on the session bus whose every screenshot is the file that is named.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    testsupport::FakePortal portal(QDBusConnection::sessionBus());
    portal.picture =
        QUrl::fromLocalFile(QCoreApplication::arguments().value(1)).toString(QUrl::FullyEncoded);
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
