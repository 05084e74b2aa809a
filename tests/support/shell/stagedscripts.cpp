#include "tests/support/shell/stagedscripts.h"

#include <QDir>
#include <QFile>

#include "plugin/config/scriptstaging.h"

namespace testsupport {

namespace {

void removeStaged()
{
    const QString directory = OfficeAssiant::scriptStagingDirectory();
    QFile::remove(directory);
    QDir(directory).removeRecursively();
}

} // namespace

StagedScripts::StagedScripts()
{
    removeStaged();
    if (!QDir().mkpath(OfficeAssiant::scriptStagingDirectory()))
        qFatal("cannot make the staging directory");
}

StagedScripts::~StagedScripts()
{
    removeStaged();
}

void StagedScripts::replace(const QString &name, const QByteArray &body) const
{
    const QString path = OfficeAssiant::scriptStagingDirectory() + QLatin1Char('/') + name;
    QFile::remove(path);
    QFile script(path);
    if (!script.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(path));
    script.write("#!/bin/bash\n" + body + '\n');
}

void StagedScripts::makeImpossible() const
{
    removeStaged();
    QFile file(OfficeAssiant::scriptStagingDirectory());
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(file.fileName()));
}

} // namespace testsupport
