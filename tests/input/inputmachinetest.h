#pragma once

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

#include <memory>

#include "input/inputchecker.h"
#include "input/inputenvironment.h"

/// A fake machine (processes, plug-ins, environment, files) that also collects the checker's debug
/// messages.
class InputMachineTest : public QObject
{
protected:
    void setUp()
    {
        m_machine = std::make_unique<QTemporaryDir>();
        QDir(m_machine->path()).mkdir(QStringLiteral("proc"));
        m_system.processDirectory = m_machine->filePath(QStringLiteral("proc/"));
        m_system.machineIdFile = m_machine->filePath(QStringLiteral("machine-id"));
        m_plugins = QStringList{QStringLiteral("compose"), QStringLiteral("xim"),
                                QStringLiteral("ibus"), QStringLiteral("fcitx")};
        m_system.pluginKeys = [this] { return m_plugins; };
        for (const char *variable : {"QT_IM_MODULE", "XMODIFIERS", "DISPLAY", "WAYLAND_DISPLAY",
                                     "XDG_SESSION_TYPE", "XMODIFIERS_OTHER"})
            qunsetenv(variable);
        writeFile(m_system.machineIdFile, machineIdText.toLatin1() + "\nsecond line\n");
        debugMessages().clear();
        m_previousHandler = qInstallMessageHandler(collectMessage);
    }

    void tearDown()
    {
        qInstallMessageHandler(m_previousHandler);
        QDir(busDirectory()).removeRecursively();
    }

    static QStringList &debugMessages()
    {
        static QStringList messages;
        return messages;
    }

    static QString busDirectory()
    {
        return QStandardPaths::writableLocation(QStandardPaths::ConfigLocation) +
               QStringLiteral("/ibus/bus/");
    }

    static void writeFile(const QString &path, const QByteArray &content)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

    void link(const QString &place, const QString &target) const
    {
        const QString path = m_machine->filePath(place);
        QDir().mkpath(QFileInfo(path).path());
        QVERIFY(QFile::link(target, path));
    }

    void runProcess(int id, const QString &name) const
    {
        link(QStringLiteral("proc/%1/exe").arg(id), QStringLiteral("/usr/bin/") + name);
    }

    void runIbus() const
    {
        runProcess(99, QStringLiteral("ibus-daemon"));
        qputenv("QT_IM_MODULE", "ibus");
    }

    QString check() const { return InputChecker(m_system).check(); }

    const QString machineIdText = QStringLiteral("0123456789abcdef0123456789abcdef");
    std::unique_ptr<QTemporaryDir> m_machine;
    OfficeAssiant::InputSystem m_system;
    QStringList m_plugins;

private:
    static void collectMessage(QtMsgType type, const QMessageLogContext &context,
                               const QString &text)
    {
        if (type == QtDebugMsg && qstrcmp(context.category, "default") == 0)
            debugMessages().append(text);
        else
            fprintf(stderr, "%s\n", qPrintable(text));
    }

    QtMessageHandler m_previousHandler = nullptr;
};
