#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace testsupport {

/// A fake program of the suite, in the application directory while this object lives. Records each
/// call, then runs the test's script.
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
