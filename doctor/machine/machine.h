#pragma once

#include <QHash>
#include <QString>

#include <optional>

#include <sys/types.h>

namespace doctor {

/// The machine that checks look at. Tests look at a directory instead, which then is the root of
/// all paths.
struct Machine
{
    /// In front of each absolute path; empty for the real machine.
    QString root;
    QHash<QString, QString> environment;
    uid_t user = 0;

    QString located(const QString &path) const { return root + path; }

    /// A variable of the environment. Where it is not set: the default of the XDG base directories,
    /// the desktop folder for XDG_DESKTOP_DIR, the account's name for USER and its home for HOME,
    /// and for SUITE_ROOT the directory above that of this program.
    std::optional<QString> variable(const QString &name) const;

    /// The user's home, without a slash at its end.
    QString home() const { return variable(QStringLiteral("HOME")).value_or(QString()); }
};

/// The machine that this process runs on, for the user that it runs as.
Machine thisMachine();

/// Entry of /etc/passwd, or of another source of accounts; the name is empty for an unknown user.
struct Account
{
    QString name;
    QString home;
    gid_t group = 0;
    /// The login shell.
    QString shell;
};
Account accountOf(const Machine &machine, uid_t user);
/// Nothing for an unknown name.
std::optional<uid_t> userNamed(const Machine &machine, const QString &name);
/// The number as text for an unknown group.
QString groupName(const Machine &machine, gid_t group);

} // namespace doctor
