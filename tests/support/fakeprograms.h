#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace testsupport {

/// Programs of the test's own, found before all others for as long as this object lives.
class FakePrograms
{
public:
    FakePrograms();
    ~FakePrograms();

    /// Adds the program @p name: a shell script with @p body. Gives its path.
    QString add(const QString &name, const QByteArray &body) const;

    /// Takes a fake away again, so that the program that it stood for is found.
    void remove(const QString &name) const;

    /// Hides every program that is not a fake.
    void hideOthers() const;

private:
    QTemporaryDir m_directory;
    QByteArray m_previousPath;
};

} // namespace testsupport
