#include "tests/support/privatehome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace testsupport {

namespace {

PrivateHome *currentHome = nullptr;

/// Variables that point outside the private home or change a probe's result.
void cleanEnvironment()
{
    for (const char *variable :
         {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME", "HELIO_RESOURCES",
          "HELIO_FRAMEWORKS", "HELIO_SUITE_HOME", "HELIO_UPDATE_CFG", "HELIO_COMPONENTS",
          "HELIO_SEARCH_ROOTS", "QT_IM_MODULE", "XMODIFIERS", "LC_ALL", "LANGUAGE"})
        qunsetenv(variable);
    qputenv("LANG", "C.UTF-8");
}

} // namespace

PrivateHome::PrivateHome()
{
    if (!m_directory.isValid())
        qFatal("no directory for a private home");
    currentHome = this;
    cleanEnvironment();
    qputenv("HOME", QFile::encodeName(path()));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(path()));
    // The scripts look for the desktop below /home/$USER, whatever HOME says.
    qputenv("USER", QFile::encodeName(QDir(QStringLiteral("/home")).relativeFilePath(path())));
    QDir().mkpath(suiteHome());
}

PrivateHome::~PrivateHome()
{
    currentHome = nullptr;
}

QString PrivateHome::path() const
{
    return m_directory.path();
}

QString PrivateHome::suiteHome() const
{
    return path() + QStringLiteral("/.local/share/Orvane");
}

QString PrivateHome::writeFile(const QString &name, const QByteArray &content) const
{
    QString target = path() + QLatin1Char('/') + name;
    QDir().mkpath(QFileInfo(target).path());
    QFile file(target);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(target));
    return target;
}

PrivateHome &PrivateHome::current()
{
    if (!currentHome)
        qFatal("the test has no private home; use HEADLESS_TEST_MAIN");
    return *currentHome;
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(path));
    return file.readAll();
}

} // namespace testsupport
