#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace testsupport {

/// A home directory of the test's own. Made before the application object, since Qt remembers
/// where a user's settings are; nothing of the real home is read or written from then on.
class PrivateHome
{
public:
    PrivateHome();
    ~PrivateHome();

    /// The home directory, without a trailing slash.
    QString path() const;

    /// The suite's directory in it (krt::dirs::orvaneHome()), which is made.
    QString suiteHome() const;

    /// Writes a file below the home directory, whose directories are made; gives its path.
    QString writeFile(const QString &name, const QByteArray &content) const;

    /// The home of the running test program.
    static PrivateHome &current();

private:
    QTemporaryDir m_directory;
};

/// The content of a file; fails the program when it cannot be read.
QByteArray readFile(const QString &path);

} // namespace testsupport
