#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace testsupport {

/// Fake programs, first in PATH while this object lives.
class FakePrograms
{
public:
    FakePrograms();
    ~FakePrograms();

    /// Adds the program @p name: a shell script with @p body. Gives its path.
    QString add(const QString &name, const QByteArray &body) const;

    /// Removes a fake, so that the real program is found again.
    void remove(const QString &name) const;

    /// Hides every program that is not a fake.
    void hideOthers() const;

private:
    QTemporaryDir m_directory;
    QByteArray m_previousPath;
};

} // namespace testsupport
