#include "tests/support/suiteprogram.h"

#include <QCoreApplication>
#include <QFile>

#include "tests/support/privatehome.h"

namespace testsupport {

SuiteProgram::SuiteProgram(const QString &name, const QByteArray &body)
    : m_path(QCoreApplication::applicationDirPath() + QLatin1Char('/') + name)
{
    QFile program(m_path);
    if (!program.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(m_path));
    const QByteArray record = QFile::encodeName(m_record.filePath(QStringLiteral("calls")));
    program.write("#!/bin/sh\n{ printf '%s\\0' \"$#\" \"$@\"; } >> '" + record + "'\n" + body +
                  '\n');
    program.close();
    program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

SuiteProgram::~SuiteProgram()
{
    QFile::remove(m_path);
}

QString SuiteProgram::path() const
{
    return m_path;
}

QList<QStringList> SuiteProgram::calls() const
{
    const QString record = m_record.filePath(QStringLiteral("calls"));
    if (!QFile::exists(record))
        return {};
    const QByteArray recorded = readFile(record);
    QStringList words =
        QString::fromUtf8(recorded.constData(), recorded.size()).split(QChar(QChar::Null));
    QList<QStringList> calls;
    while (words.size() > 1) {
        const int count = words.takeFirst().toInt();
        calls.append(words.mid(0, count));
        words = words.mid(count);
    }
    return calls;
}

} // namespace testsupport
