#pragma once

#include <QHash>
#include <QSet>

#include "doctor/machine/machine.h"
#include "doctor/why/input/places/places.h"
#include "doctor/why/input/places/shelltext.h"

namespace doctor {

/// Collects the settings of files in the order in which they are read.
class SettingCollector
{
public:
    explicit SettingCollector(const Machine &machine) : m_machine(machine) {}

    const Machine &machine() const { return m_machine; }
    const Settings &result() const { return m_result; }

    /// Nothing for a file that is not there or cannot be read; the latter is noted.
    std::optional<QByteArray> content(const QString &path, Stage stage);

    void readFile(const QString &path, Stage stage, bool isSure,
                  QVector<Setting> (*parse)(const QByteArray &));
    /// And the files that it reads itself.
    void readShell(const QString &path, Stage stage, bool isSure);
    /// An xinputrc, which im-config reads, or the session's start on other distributions.
    void readInputConfig(const QString &path, bool isSure);
    /// The settings of @p script as if it stood in line @p line of a file.
    void readScript(const QByteArray &script, const QString &path, int line);

private:
    /// What is being read.
    struct Source
    {
        QString path;
        Stage stage;
        bool isSure;
        int depth;
    };

    void add(const Source &source, const Setting &setting);
    void readShell(const Source &source);
    void take(const Source &source, const ShellStatement &statement);
    void assign(const Source &source, const ShellStatement &statement);
    void exportPending(const Source &source, const ShellStatement &statement);
    void follow(const Source &source, const ShellStatement &statement);
    void readProfileD(const Source &profile);
    void takeFramework(const Source &source, const ShellStatement &statement);
    /// Whether a variable is in the environment so far: nothing for "perhaps".
    std::optional<bool> isSet(const QByteArray &variable) const;

    const Machine &m_machine;
    Settings m_result;
    /// Assigned, but not yet exported.
    QHash<QByteArray, Setting> m_pending;
    int m_files = 0;
    bool m_hasReadProfileD = false;
};

} // namespace doctor
