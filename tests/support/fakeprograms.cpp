#include "tests/support/fakeprograms.h"

#include <QFile>

namespace testsupport {

FakePrograms::FakePrograms() : m_previousPath(qgetenv("PATH"))
{
    qputenv("PATH", QFile::encodeName(m_directory.path()) + ':' + m_previousPath);
}

FakePrograms::~FakePrograms()
{
    qputenv("PATH", m_previousPath);
}

QString FakePrograms::add(const QString &name, const QByteArray &body) const
{
    QFile program(m_directory.filePath(name));
    if (!program.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(program.fileName()));
    program.write("#!/bin/sh\n" + body + '\n');
    program.close();
    program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return program.fileName();
}

void FakePrograms::remove(const QString &name) const
{
    if (!QFile::remove(m_directory.filePath(name)))
        qFatal("there is no fake %s", qPrintable(name));
}

void FakePrograms::hideOthers() const
{
    qputenv("PATH", QFile::encodeName(m_directory.path()));
}

} // namespace testsupport
