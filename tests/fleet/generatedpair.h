#pragma once

#include <QSet>

#include <algorithm>
#include <random>

#include "fleet/report/report.h"

/// Reports of two or more machines that are the same but for what any two machines differ in, and a
/// few planted differences. The same number always makes the same machines.
class GeneratedMachines
{
public:
    GeneratedMachines(unsigned number, int count) : m_random(number)
    {
        for (int i = 0; i < count; ++i)
            reports.append(machine(i));
    }

    /// Plants one cause and up to four lesser differences into one of the reports.
    void plant(int report)
    {
        QVector<Planted> causes{
            {"environment", "SAL_USE_VCLPLUGIN", "gen"},
            {"environment", "LD_PRELOAD", "/usr/lib/libjemalloc.so"},
            {"environment", "GTK_IM_MODULE", "xim"},
            {"storage", "home: writable", "no"},
            {"suite", "LibreOffice in /usr/lib/libreoffice", "7.3.2.2"},
            {"suite", "LibreOffice in /usr/lib/libreoffice: components", "calc, writer"},
            {"input", "running", "ibus"},
            {"packages", "libreoffice-gtk3", "1:7.3.2-1"},
            {"associations", "docx", "abiword.desktop"}};
        QVector<Planted> lesser{
            {"packages", "gnome-shell", "43.6-1"},
            {"packages", "hunspell-en-us", "1:2019.10.06-1"},
            {"hardware", "memory", "8 GiB"},
            {"hardware", "processor", "Other CPU @ 2.40GHz"},
            {"system", "kernel", "6.1.0-25-amd64"},
            {"environment", "EDITOR", "nano"},
            {"desktop", "~/.config/gtk-3.0/settings.ini [Settings] gtk-theme", "Other"}};
        std::shuffle(causes.begin(), causes.end(), m_random);
        std::shuffle(lesser.begin(), lesser.end(), m_random);
        cause = plantOne(reports[report], causes.first());
        const int more = number(5);
        for (int i = 0; i < more; ++i)
            plantOne(reports[report], lesser.at(i));
    }

    QVector<fleet::Report> reports;
    /// Names of the planted differences, with their group in front.
    QSet<QString> planted;
    QString cause;
    /// How many values of each report are of the kind that differs on any two machines.
    static constexpr int passing = 420;

private:
    struct Planted
    {
        const char *group;
        const char *name;
        const char *value;
    };

    int number(int below) { return static_cast<int>(m_random() % static_cast<unsigned>(below)); }
    QString hexadecimal(int length)
    {
        QString text;
        for (int i = 0; i < length; ++i)
            text += QString::number(number(16), 16);
        return text;
    }
    QString time()
    {
        return QStringLiteral("2026-%1-%2T%3:%4:07Z")
            .arg(1 + number(12), 2, 10, QLatin1Char('0'))
            .arg(1 + number(28), 2, 10, QLatin1Char('0'))
            .arg(number(24), 2, 10, QLatin1Char('0'))
            .arg(number(60), 2, 10, QLatin1Char('0'));
    }

    QString plantOne(fleet::Report &report, const Planted &one)
    {
        report.groups[QLatin1String(one.group)].insert(QLatin1String(one.name),
                                                       QLatin1String(one.value));
        QString name = QLatin1String(one.group) + QLatin1Char('/') + QLatin1String(one.name);
        planted.insert(name);
        return name;
    }

    /// A value that no two machines have in common.
    QString passingValue(int kind, const fleet::Report &report)
    {
        QStringList parts{QStringLiteral("alpha"), QStringLiteral("beta"), QStringLiteral("gamma")};
        switch (kind) {
        case 0:
            return report.home + QStringLiteral("/.config/part");
        case 1:
            return time();
        case 2:
            return hexadecimal(8) + QStringLiteral("-0a0b-4c0d-8e0f-") + hexadecimal(12);
        case 3:
            return QStringLiteral("unix:path=/run/user/%1/bus").arg(1000 + number(500));
        case 4:
            return QStringLiteral("%1 on %2").arg(report.user, report.host);
        case 5:
            std::shuffle(parts.begin(), parts.end(), m_random);
            return parts.join(QStringLiteral(", "));
        case 6:
            return QStringLiteral("/tmp/part-%1x%2/socket").arg(hexadecimal(4)).arg(number(1000));
        case 7:
            return QStringLiteral("pid %1").arg(2 + number(30000));
        case 8:
            return QString::number(1700000000 + number(80000000));
        default:
            return QStringLiteral("0a") + hexadecimal(30);
        }
    }

    fleet::Report machine(int index)
    {
        fleet::Report report;
        report.host = QStringLiteral("desk-%1%2").arg(index).arg(number(1000));
        report.user = QStringLiteral("person%1").arg(number(1000));
        report.home = QStringLiteral("/home/") + report.user;
        report.made = time();
        report.groups = common();
        for (int i = 0; i < passing; ++i) {
            const QString group =
                i % 2 == 0 ? QStringLiteral("environment") : QStringLiteral("suite-settings");
            report.groups[group].insert(QStringLiteral("Part%1").arg(i),
                                        passingValue(i % 10, report));
        }
        report.groups[QStringLiteral("system")].insert(QStringLiteral("boot id"), hexadecimal(7));
        report.groups[QStringLiteral("hardware")].insert(QStringLiteral("serial number"),
                                                         hexadecimal(7));
        report.findings.append({QStringLiteral("home.room"), QStringLiteral("note"),
                                report.home + QStringLiteral(" has little room since ") + time()});
        return report;
    }

    static QMap<QString, fleet::Facts> common()
    {
        QMap<QString, fleet::Facts> groups{
            {QStringLiteral("system"),
             {{QStringLiteral("distribution"), QStringLiteral("Debian GNU/Linux 12")},
              {QStringLiteral("kernel"), QStringLiteral("6.1.0-28-amd64")}}},
            {QStringLiteral("hardware"),
             {{QStringLiteral("memory"), QStringLiteral("16 GiB")},
              {QStringLiteral("processor"), QStringLiteral("CPU @ 3.00GHz")}}},
            {QStringLiteral("storage"),
             {{QStringLiteral("home: writable"), QStringLiteral("yes")}}},
            {QStringLiteral("input"), {{QStringLiteral("running"), QStringLiteral("fcitx5")}}},
            {QStringLiteral("associations"),
             {{QStringLiteral("docx"), QStringLiteral("libreoffice-writer.desktop")}}},
            {QStringLiteral("suite"),
             {{QStringLiteral("LibreOffice in /usr/lib/libreoffice"), QStringLiteral("7.4.7.2")},
              {QStringLiteral("LibreOffice in /usr/lib/libreoffice: components"),
               QStringLiteral("calc, impress, writer")}}}};
        fleet::Facts &packages = groups[QStringLiteral("packages")];
        for (int i = 0; i < 200; ++i)
            packages.insert(QStringLiteral("fonts-%1").arg(i), QStringLiteral("1.%1-2").arg(i));
        packages.insert(QStringLiteral("libreoffice-gtk3"), QStringLiteral("4:7.4.7-1"));
        return groups;
    }

    std::mt19937 m_random;
};
