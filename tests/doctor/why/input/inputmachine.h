#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

#include "doctor/why/input/input.h"

/// The process that is asked about, and where its libraries are.
constexpr qint64 program = 500;
inline const QString libraries = QStringLiteral("/usr/lib/x86_64-linux-gnu/");

/// What a process of an InputMachine is like.
struct FakeProcess
{
    qint64 id = 0;
    QByteArray name;
    QByteArray environment;
    QByteArray maps;
    qint64 parent = 1;
    bool isManaged = false;
};

/// A machine below a directory, with one user and processes.
class InputMachine
{
public:
    InputMachine()
    {
        m_machine.root = m_root.path();
        m_machine.user = ::geteuid();
        clear();
    }

    static QString home() { return QStringLiteral("/home/tester"); }
    const doctor::Machine &machine() const { return m_machine; }
    QString located(const QString &path) const { return m_root.path() + path; }

    void clear()
    {
        QDir(m_root.path()).removeRecursively();
        write(QStringLiteral("/etc/passwd"),
              "tester:x:" + QByteArray::number(::geteuid()) + ":1000::/home/tester:/bin/bash\n");
        write(QStringLiteral("/etc/machine-id"), "0123456789abcdef\n");
        write(home() + QStringLiteral("/.config/empty"), {});
    }

    void write(const QString &path, const QByteArray &content) const
    {
        QDir().mkpath(located(path).section(QLatin1Char('/'), 0, -2));
        QFile file(located(path));
        QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

    void add(const FakeProcess &process) const
    {
        const QString directory = QStringLiteral("/proc/%1/").arg(process.id);
        const QByteArray user = QByteArray::number(::geteuid());
        write(directory + QStringLiteral("stat"),
              QByteArray::number(process.id) + " (" + process.name + ") S " +
                  QByteArray::number(process.parent) + " 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 77 0");
        write(directory + QStringLiteral("environ"), process.environment);
        write(directory + QStringLiteral("maps"), process.maps);
        write(directory + QStringLiteral("cgroup"),
              process.isManaged ? "0::/user.slice/user@" + user + ".service/app.slice\n"
                                : QByteArray("0::/user.slice/session-2.scope\n"));
        QFile::link(QStringLiteral("/opt/app/program"), located(directory + QStringLiteral("exe")));
    }

    /// A program without a parent of interest; blanks part the variables.
    void addProgram(const QByteArray &environment, const QString &library = {}) const
    {
        QByteArray text = environment;
        add({program, "program", text.replace(' ', '\0'),
             "1-2 r-xp 0 0 0 " + library.toUtf8() + '\n'});
    }

    doctor::InputReport why(std::optional<qint64> process,
                            const doctor::BusAnswer &answer = {}) const
    {
        return doctor::whyInput(m_machine, process,
                                [&answer](const QByteArray &) { return answer; });
    }

private:
    /// In memory where possible: cases are many and their files small.
    QTemporaryDir m_root{(QFileInfo(QStringLiteral("/dev/shm")).isWritable()
                              ? QStringLiteral("/dev/shm")
                              : QDir::tempPath()) +
                         QStringLiteral("/whyinput-XXXXXX")};
    doctor::Machine m_machine;
};

/// An ELF header with @p content behind it.
inline QByteArray fakeLibrary(const QByteArray &content, char machine = 62)
{
    QByteArray bytes("\177ELF\2\1\1");
    bytes.append(QByteArray(11, '\0'));
    return bytes + machine + '\0' + content;
}

/// The state and the lines of where a variable has its value from.
inline QString originIn(const doctor::InputReport &report, const QByteArray &variable)
{
    const doctor::Origin &origin = report.named(variable)->origin;
    QStringList told{QString::number(int(origin.state))};
    for (const doctor::Setting &line : origin.lines)
        told.append(doctor::placeText(line));
    return told.join(QLatin1Char(' '));
}
