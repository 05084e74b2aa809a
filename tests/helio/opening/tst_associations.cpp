#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

#include "helio/opening/associations.h"
#include "helio/runtime/mimepackage.h"
#include "tests/support/privatehome.h"

using helio::AssociationReading;
using helio::OpeningSuite;

namespace {

const QString home = QStringLiteral("/home/mira");
const QString writer = QStringLiteral("vyr-office-vyr.desktop");

/// A machine in a directory, with a desktop whose programs only the test knows.
class Desktop
{
public:
    Desktop()
    {
        machine.root = m_root.path();
        machine.environment = {{QStringLiteral("HOME"), home},
                               {QStringLiteral("PATH"), QStringLiteral("/usr/bin")},
                               {QStringLiteral("SUITE_ROOT"), QStringLiteral("/suite")}};
        write(QStringLiteral("/usr/bin/true"), "");
        QFile::setPermissions(path(QStringLiteral("/usr/bin/true")),
                              QFile::ReadOwner | QFile::ExeOwner);
        for (const char *suffix : {"docx", "xlsx", "vyr"})
            write(QStringLiteral("/samples/vyr.") + QLatin1String(suffix), "a sample");
    }

    QString path(const QString &name) const { return m_root.path() + name; }

    void write(const QString &name, const QByteArray &content) const
    {
        QDir().mkpath(path(name).section(QLatin1Char('/'), 0, -2));
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    void writeEntry(const QString &name) const
    {
        write(name, "[Desktop Entry]\nType=Application\nName=x\nExec=true %f\n");
    }

    void installLibreOffice() const
    {
        write(QStringLiteral("/usr/lib/libreoffice/program/bootstraprc"),
              "[Bootstrap]\nProductKey=LibreOffice 7.4\nUserInstallation=$SYSUSERCONFIG/lo\n");
        write(QStringLiteral("/usr/lib/libreoffice/program/soffice"), "");
        for (const char *program : {"writer", "calc", "impress"})
            writeEntry(QStringLiteral("/usr/share/applications/libreoffice-%1.desktop")
                           .arg(QLatin1String(program)));
    }

    helio::DesktopAnswer answer(const QString &program, const QStringList &arguments)
    {
        asked.append(program + QLatin1Char(' ') + arguments.join(QLatin1Char(' ')));
        if (asked.last().startsWith(failing) && !failing.isEmpty())
            return {false, QStringLiteral("it failed"), {}};
        if (program == QLatin1String("update-mime-database"))
            hasTypes = QFile::exists(arguments.value(0) + QStringLiteral("/packages/Override.xml"));
        else if (arguments.value(0) == QLatin1String("info"))
            return {false, {}, told(arguments.mid(3))};
        else if (arguments.size() == 3)
            defaults.insert(arguments.at(1), arguments.at(2));
        else
            return {false, {}, entryOf(arguments.at(1))};
        return {};
    }

    helio::AskDesktop asking()
    {
        return [this](const QString &program, const QStringList &arguments) {
            return answer(program, arguments);
        };
    }

    AssociationReading read()
    {
        return readAssociations(path(QStringLiteral("/samples")), asking());
    }

    AssociationReading repair(const QStringList &suffixes = {})
    {
        return repairAssociations(helio::openingSuite(machine), path(QStringLiteral("/samples")),
                                  suffixes, machine, asking());
    }

    doctor::Machine machine;
    QStringList asked;
    QString failing;
    bool hasTypes = false;
    QMap<QString, QString> defaults;

private:
    QByteArray told(const QStringList &files) const
    {
        QByteArray output;
        for (const QString &file : files) {
            const QByteArray suffix = file.section(QLatin1Char('.'), -1).toUtf8();
            const QByteArray plain = suffix == "vyr" ? "application/octet-stream" : "x/" + suffix;
            output += "uri: file://" + QFile::encodeName(file) +
                      "\nattributes:\n  standard::content-type: " +
                      (hasTypes ? "application/vyr-office." + suffix : plain) + '\n';
        }
        return output;
    }

    QByteArray entryOf(const QString &type) const
    {
        const QString entry = defaults.value(type);
        return entry.isEmpty()
                   ? "No default applications for “a”\n"
                   : "Default application for “a”: " + entry.toUtf8() + "\nRegistered:\n";
    }

    QTemporaryDir m_root;
};

QStringList shown(const AssociationReading &reading)
{
    QStringList rows;
    for (const helio::Association &row : reading.rows)
        rows.append(QStringList{row.kind.suffix, row.type, row.entry}.join(QLatin1Char(' ')));
    return rows;
}

} // namespace

class AssociationsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { helio::offerMimePackage(); }

    void withoutASuiteNothingIsAskedAndThatIsSaid()
    {
        Desktop desktop;
        QVERIFY(helio::openingSuite(desktop.machine).id.isEmpty());
        QVERIFY(desktop.repair().fault.contains(QStringLiteral("No office suite")));
        QCOMPARE(desktop.asked, QStringList());
    }

    void kindsHaveWhatTheDesktopSays()
    {
        Desktop desktop;
        desktop.defaults.insert(QStringLiteral("x/docx"), QStringLiteral("other.desktop"));
        QCOMPARE(shown(desktop.read()),
                 (QStringList{QStringLiteral("docx x/docx other.desktop"),
                              QStringLiteral("vyr application/octet-stream "),
                              QStringLiteral("xlsx x/xlsx ")}));
    }

    void aFreshHomeGetsFoldersTypesAndEntries()
    {
        Desktop desktop;
        desktop.writeEntry(QStringLiteral("/opt/orvane/office/vyr"));
        for (const char *program : {"vyr", "tbl", "shw"})
            desktop.writeEntry(QStringLiteral("/suite/desktops/vyr-office-%1.desktop")
                                   .arg(QLatin1String(program)));
        const AssociationReading after = desktop.repair();
        QCOMPARE(after.fault, QString());
        QCOMPARE(shown(after).first(),
                 QStringLiteral("docx application/vyr-office.docx vyr-office-vyr.desktop"));
        QCOMPARE(desktop.defaults.value(QStringLiteral("application/vyr-office.xlsx")),
                 QStringLiteral("vyr-office-tbl.desktop"));
        const QString data = desktop.path(home + QStringLiteral("/.local/share"));
        QVERIFY(desktop.asked.contains(QStringLiteral("update-mime-database %1/mime").arg(data)));
        QVERIFY(QFile::exists(data + QStringLiteral("/applications/") + writer));
        QVERIFY(QDir(desktop.path(home + QStringLiteral("/.config"))).exists());
    }

    void oneKindCanBeRepairedAlone()
    {
        Desktop desktop;
        desktop.writeEntry(QStringLiteral("/usr/share/applications/") + writer);
        desktop.hasTypes = true;
        desktop.repair({QStringLiteral("docx")});
        QCOMPARE(desktop.defaults.keys(),
                 QStringList{QStringLiteral("application/vyr-office.docx")});
    }

    void whatIsWellStays()
    {
        Desktop desktop;
        desktop.writeEntry(QStringLiteral("/usr/share/applications/") + writer);
        desktop.hasTypes = true;
        for (const char *suffix : {"docx", "xlsx", "vyr"})
            desktop.defaults.insert(
                QStringLiteral("application/vyr-office.") + QLatin1String(suffix), writer);
        const QString list = home + QStringLiteral("/.local/share/mime/packages/Override.xml");
        desktop.repair();
        QVERIFY(!QFile::exists(desktop.path(list)));
        QVERIFY(std::none_of(desktop.asked.begin(), desktop.asked.end(),
                             [](const QString &asked) { return asked.endsWith(writer); }));
    }

    void libreOfficeOpensThemWhereItIsTheSuite()
    {
        Desktop desktop;
        desktop.installLibreOffice();
        const OpeningSuite suite = helio::openingSuite(desktop.machine);
        QCOMPARE(suite.name, QStringLiteral("LibreOffice"));
        QVERIFY(suite.knows(QStringLiteral("x/docx")));
        QVERIFY(!suite.knows(QStringLiteral("application/octet-stream")));
        desktop.repair();
        QCOMPARE(desktop.defaults.value(QStringLiteral("application/vyr-office.vyr")),
                 QStringLiteral("libreoffice-writer.desktop"));
        QCOMPARE(desktop.defaults.value(QStringLiteral("application/vyr-office.xlsx")),
                 QStringLiteral("libreoffice-calc.desktop"));
    }

    void whatFailsIsSaid_data()
    {
        QTest::addColumn<QString>("failing");
        QTest::newRow("types") << QStringLiteral("gio info");
        QTest::newRow("entries") << QStringLiteral("gio mime");
        QTest::newRow("database") << QStringLiteral("update-mime-database");
    }

    void whatFailsIsSaid()
    {
        QFETCH(QString, failing);
        Desktop desktop;
        desktop.writeEntry(QStringLiteral("/usr/share/applications/") + writer);
        desktop.failing = failing;
        QCOMPARE(desktop.repair().fault, QStringLiteral("it failed"));
    }

    void aToolThatTellsNothingIsNotBelieved()
    {
        const Desktop desktop;
        const auto answers = [](const QString &, const QStringList &) {
            return helio::DesktopAnswer{false, {}, "something else"};
        };
        const QString samples = desktop.path(QStringLiteral("/samples"));
        QVERIFY(!helio::readAssociations(samples, answers).fault.isEmpty());
    }

    void aHomeThatCannotBeWrittenIsSaid()
    {
        Desktop desktop;
        desktop.writeEntry(QStringLiteral("/usr/share/applications/") + writer);
        desktop.write(home + QStringLiteral("/.local"), "no folder");
        QVERIFY(desktop.repair().fault.contains(QStringLiteral("cannot be made")));
    }
};

int main(int argc, char *argv[])
{
    const testsupport::PrivateHome privateHome;
    QCoreApplication application(argc, argv);
    AssociationsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_associations.moc"
