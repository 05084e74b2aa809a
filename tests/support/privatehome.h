#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace testsupport {

/// A private home directory: the real one is neither read nor written. Create it before the
/// application object, since Qt caches the location of the user's settings.
class PrivateHome
{
public:
    PrivateHome();
    ~PrivateHome();

    /// The home directory, without a trailing slash.
    QString path() const;

    /// The suite's directory in it (krt::dirs::orvaneHome()), which is made.
    QString suiteHome() const;

    /// Writes a file below the home directory, making its directories; returns its path.
    QString writeFile(const QString &name, const QByteArray &content) const;

    /// The home of the running test program.
    static PrivateHome &current();

private:
    QTemporaryDir m_directory;
};

/// The content of a file; aborts the program if it cannot be read.
QByteArray readFile(const QString &path);

} // namespace testsupport
