#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace testsupport {

/// A program of the suite, in the application directory for as long as this object lives. It
/// writes down each call before it does what the test wants.
class SuiteProgram
{
public:
    /// @p body is a shell script; "$@" are the program's arguments.
    explicit SuiteProgram(const QString &name, const QByteArray &body = {});
    ~SuiteProgram();

    QString path() const;

    /// The argument lists of the calls so far, in order.
    QList<QStringList> calls() const;

private:
    Q_DISABLE_COPY_MOVE(SuiteProgram)

    QString m_path;
    QTemporaryDir m_record;
};

} // namespace testsupport
