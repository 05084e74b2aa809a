#pragma once

#include <QDir>
#include <QFile>

#include <random>

#include "doctor/machine/machine.h"

/// A session's directories below one root, with lists, desktop entries and types as people,
/// packages and damage leave them. The same number always makes the same session.
class GeneratedSession
{
public:
    GeneratedSession(const QString &root, unsigned number) : m_root(root), m_random(number)
    {
        makePrograms();
        const QStringList desktops{QStringLiteral("X-Generic"), QStringLiteral("KDE"),
                                   QStringLiteral("GNOME"), QStringLiteral("Odd:GNOME"), QString()};
        environment = {
            {QStringLiteral("HOME"), root},
            {QStringLiteral("PATH"), root + QStringLiteral("/bin:/usr/bin:/bin")},
            {QStringLiteral("XDG_CONFIG_HOME"), root + QStringLiteral("/config")},
            {QStringLiteral("XDG_CONFIG_DIRS"),
             root + QStringLiteral("/etc1:") + root + QStringLiteral("/etc2")},
            {QStringLiteral("XDG_DATA_HOME"), root + QStringLiteral("/data")},
            {QStringLiteral("XDG_DATA_DIRS"),
             root + QStringLiteral("/share1/:") + root + QStringLiteral("/share2")},
            {QStringLiteral("XDG_CURRENT_DESKTOP"), any(desktops)},
            {QStringLiteral("XDG_MENU_PREFIX"), rarely() ? QStringLiteral("odd-") : QString()},
            // Without it the script asks the display and the message bus.
            {QStringLiteral("DE"), QStringLiteral("generic")},
            {QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8")}};
        for (const char *folder : {"config", "etc1", "etc2"})
            makeLists(QLatin1String(folder), false);
        for (const char *folder : {"data", "share1", "share2"}) {
            makeEntries(QLatin1String(folder) + QStringLiteral("/applications"));
            makeLists(QLatin1String(folder) + QStringLiteral("/applications"), true);
            makeTypes(QLatin1String(folder) + QStringLiteral("/mime"));
        }
    }

    QHash<QString, QString> environment;

    doctor::Machine machine() const { return {QString(), environment, 0}; }

    QString type()
    {
        static const QStringList types{
            QStringLiteral("application/x-a"),   QStringLiteral("application/x-b"),
            QStringLiteral("application/x-a.b"), QStringLiteral("application/x-a+b"),
            QStringLiteral("text/x-c"),          QStringLiteral("application/x-alias")};
        return any(types);
    }

private:
    int number(int below) { return static_cast<int>(m_random() % static_cast<unsigned>(below)); }
    bool often() { return number(3) > 0; }
    bool rarely() { return number(8) == 0; }
    template<typename List>
    typename List::value_type any(const List &list)
    {
        return list[number(int(list.size()))];
    }

    void write(const QString &path, const QByteArray &content)
    {
        const QString whole = m_root + QLatin1Char('/') + path;
        QDir().mkpath(whole.section(QLatin1Char('/'), 0, -2));
        QFile file(whole);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("%s cannot be written", qPrintable(whole));
    }

    void makePrograms()
    {
        for (const char *name : {"bin/tool", "bin/other", "bin/plain"})
            write(QLatin1String(name), "#!/bin/sh\n");
        for (const char *name : {"/bin/tool", "/bin/other"})
            QFile::setPermissions(m_root + QLatin1String(name),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QDir().mkpath(m_root + QStringLiteral("/bin/folder"));
    }

    QByteArray program()
    {
        const QVector<QByteArray> programs{"tool",
                                           "tool",
                                           "other",
                                           "plain",
                                           "folder",
                                           "nowhere",
                                           m_root.toUtf8() + "/bin/tool",
                                           m_root.toUtf8() + "/bin/nowhere"};
        return any(programs);
    }

    QByteArray entryName()
    {
        const QVector<QByteArray> names{"a.desktop",     "b.desktop",        "c-d.desktop",
                                        "c-d-e.desktop", "f.desktop",        "missing.desktop",
                                        "g.desktop",     "kde/inner.desktop"};
        return any(names);
    }

    QByteArray value()
    {
        QByteArray text = rarely() ? " " : "";
        for (int count = number(4); count >= 0; --count) {
            text += rarely() ? QByteArray() : entryName();
            if (rarely())
                text += any(QVector<QByteArray>{" ", "\\s", "\\", "\\;", "\xff"});
            text += count > 0 || often() ? ";" : "";
        }
        return text;
    }

    void makeList(const QString &path, const QVector<QByteArray> &groups)
    {
        const QByteArray end = rarely() ? "\r\n" : "\n";
        QByteArray content = rarely() ? "# comment" + end : QByteArray();
        for (int count = 1 + number(4); count > 0; --count) {
            content += '[' + any(groups) + ']' + (rarely() ? " " : "") + end;
            for (int line = number(5); line > 0; --line)
                content += (rarely() ? " " : "") + type().toUtf8() + (rarely() ? " " : "") + '=' +
                           value() + end;
            if (number(12) == 0)
                content += any(QVector<QByteArray>{"broken", "=x", "[open", "[a]b", "", "a[b]=c",
                                                   "a[b=c", "[]", " # comment"}) +
                           end;
        }
        if (number(20) == 0)
            content.prepend("early=line" + end);
        if (rarely())
            content.chop(1);
        write(path, content);
    }

    void makeLists(const QString &folder, bool hasCaches)
    {
        const QVector<QByteArray> groups{"Default Applications", "Added Associations",
                                         "Removed Associations", "Default Applications Too",
                                         "Other"};
        for (const char *name : {"mimeapps.list", "gnome-mimeapps.list", "kde-mimeapps.list",
                                 "odd-mimeapps.list", "GNOME-mimeapps.list"}) {
            const QString path = folder + QLatin1Char('/') + QLatin1String(name);
            if (number(25) == 0)
                QDir().mkpath(m_root + QLatin1Char('/') + path);
            else if (number(5) < 2)
                makeList(path, groups);
        }
        if (!hasCaches)
            return;
        for (const char *name : {"defaults.list", "odd-defaults.list"}) {
            if (number(4) == 0)
                makeList(folder + QLatin1Char('/') + QLatin1String(name), groups);
        }
        for (const char *name : {"mimeinfo.cache", "odd-mimeinfo.cache"}) {
            if (number(5) < 2)
                makeList(folder + QLatin1Char('/') + QLatin1String(name),
                         rarely() ? groups : QVector<QByteArray>{"MIME Cache"});
        }
    }

    QByteArray entry()
    {
        QByteArray text = rarely() ? "# comment\n" : "";
        text += number(15) > 0 ? "[Desktop Entry]\n" : "[Other]\n";
        text += number(15) > 0 ? "Type=Application\n" : "Type=Link\n";
        text += "Name=x\nName[de]=y\n";
        if (number(4) == 0)
            text += "TryExec=" + (rarely() ? QByteArray() : program()) + '\n';
        const QByteArray exec = program();
        if (number(12) > 0)
            text += "Exec=" +
                    any(QVector<QByteArray>{exec + " %f", exec, exec + "   --x %U", " " + exec,
                                            '"' + exec + "\" %f", "'" + exec + " %f", '"' + exec,
                                            exec + " \"a b\"", "env A=b " + exec, "", "# " + exec,
                                            exec + " \\\\x", exec + " \\x"}) +
                    '\n';
        for (const char *line : {"Hidden=true", "NoDisplay=true", "OnlyShowIn=KDE;",
                                 "NotShowIn=GNOME;", "[Desktop Action x]", "Exec[de]=tool"}) {
            if (number(10) == 0)
                text += QByteArray(line) + '\n';
        }
        if (number(15) == 0)
            text += "no entry\n";
        if (often())
            text +=
                "MimeType=" + type().toUtf8() + ';' + type().toUtf8() + (often() ? ";" : "") + '\n';
        if (number(4) == 0)
            text += "InitialPreference=" +
                    any(QVector<QByteArray>{"1", "5", "9", "10", "", "x", "-1"}) + '\n';
        return text;
    }

    void makeEntries(const QString &folder)
    {
        for (const char *name : {"a.desktop", "b.desktop", "f.desktop", "g.desktop"}) {
            if (number(5) < 2)
                write(folder + QLatin1Char('/') + QLatin1String(name), entry());
        }
        for (const auto &names :
             {QStringList{QStringLiteral("c-d.desktop"), QStringLiteral("c/d.desktop")},
              QStringList{QStringLiteral("c-d-e.desktop"), QStringLiteral("c/d-e.desktop"),
                          QStringLiteral("c-d/e.desktop"), QStringLiteral("c/d/e.desktop")},
              QStringList{QStringLiteral("kde/inner.desktop")}}) {
            if (number(2) == 0)
                write(folder + QLatin1Char('/') + any(names), entry());
        }
    }

    void makeTypes(const QString &folder)
    {
        QByteArray lines;
        for (int count = number(5); count > 0; --count)
            lines += type().toUtf8() + ' ' + type().toUtf8() + '\n';
        write(folder + QStringLiteral("/subclasses"), lines);
        if (folder.startsWith(QLatin1String("share2")))
            write(folder + QStringLiteral("/aliases"), "application/x-alias application/x-a\n");
    }

    QString m_root;
    std::mt19937 m_random;
};
