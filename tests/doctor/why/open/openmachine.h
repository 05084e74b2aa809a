#pragma once

#include <QTemporaryDir>
#include <QTest>

#include "doctor/why/open/open.h"

/// A machine below a directory of its own, with two programs, a type and what tests add.
class OpenMachine
{
public:
    OpenMachine()
    {
        program("/usr/bin/tool");
        write("/usr/share/mime/globs2", "50:application/x-plan:*.plan\n40:text/x-note:*.note\n");
        write("/usr/share/mime/aliases", "application/plan application/x-plan\n");
        write("/usr/share/mime/subclasses", "application/x-plan application/x-base\n"
                                            "application/x-base application/x-plan\n");
        write("/usr/share/mime/packages/plan.xml",
              "<mime-info>\n<mime-type type=\"application/x-plan\">\n<comment/>\n"
              "<glob pattern=\"*.plan\"/></mime-type></mime-info>\n");
    }

    doctor::Machine machine() const
    {
        return {m_root.path(),
                {{QStringLiteral("HOME"), QStringLiteral("/home/u")},
                 {QStringLiteral("PATH"), QStringLiteral("/usr/bin")},
                 {QStringLiteral("XDG_CURRENT_DESKTOP"), QStringLiteral("Odd:GNOME")}},
                0};
    }
    doctor::Opening ofType(const char *name = "application/x-plan") const
    {
        return doctor::OpenQuestion(machine()).ofType(QLatin1String(name));
    }
    QString path(const char *name) const { return m_root.path() + QLatin1String(name); }

    void write(const char *name, const QByteArray &content) const
    {
        const QString whole = path(name);
        QVERIFY(QDir().mkpath(whole.section(QLatin1Char('/'), 0, -2)));
        QFile file(whole);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }
    void program(const char *name) const
    {
        write(name, "#!/bin/sh\n");
        QVERIFY(QFile::setPermissions(path(name), QFile::ReadOwner | QFile::ExeOwner));
    }
    void entry(const char *name, const QByteArray &more = "Exec=tool %f\n") const
    {
        write((QByteArray("/usr/share/applications/") + name).constData(),
              "[Desktop Entry]\nType=Application\nName=x\n" + more);
    }

private:
    QTemporaryDir m_root;
};
