#include <QTest>

#include <sys/stat.h>

#include "tests/doctor/why/open/openmachine.h"

using doctor::Fate;
using doctor::FoundType;
using doctor::Opening;
using doctor::OpenQuestion;

namespace {

constexpr char userList[] = "/home/u/.config/mimeapps.list";
constexpr char type[] = "application/x-plan";

QByteArray defaults(const char *entries)
{
    return QByteArray("[Default Applications]\napplication/x-plan=") + entries + '\n';
}

Fate fateOf(const Opening &opening, const char *entry)
{
    for (const doctor::Statement &statement : opening.gio.statements) {
        if (statement.entry == QLatin1String(entry))
            return statement.fate;
    }
    qFatal("nothing names %s", entry);
}

} // namespace

class OpenTest : public QObject
{
    Q_OBJECT

private slots:
    void theFirstListThatNamesAnEntryDecides();
    void eachEntryThatLosesHasItsReason_data();
    void eachEntryThatLosesHasItsReason();
    void aListWithALineThatIsNoneIsNotObeyed();
    void aMoreGeneralTypeIsTakenAlsoInACircle();
    void aFilesTypeComesFromItsNameOrItsContent();
    void theToolsThatDifferAreNamed();
    void xdgOpenHandsAFileToTheDesktop_data();
    void xdgOpenHandsAFileToTheDesktop();
    void officeDocumentsAreProposedToTheChosenSuite();
    void otherDocumentsAreProposedToItWhereNothingOpensThem();
    void theRepairChangesOneLineAndNoOtherByte();
    void aPipeOrAHugeFileAsListLeavesItUndecided();
    void unreadableEntriesAndOddNamesDoNotStopTheAnswer();
    void tenThousandEntriesAreAnswered();
};

void OpenTest::theFirstListThatNamesAnEntryDecides()
{
    const OpenMachine machine;
    machine.entry("own.desktop");
    machine.entry("other.desktop");
    machine.write(userList, "# mine\n" + defaults("own.desktop;"));
    machine.write("/usr/share/applications/mimeapps.list", defaults("other.desktop"));
    const Opening opening = machine.ofType();
    QCOMPARE(int(opening.verdict), int(Opening::Verdict::Opens));
    QCOMPARE(opening.gio.choice.entry, QStringLiteral("own.desktop"));
    QCOMPARE(opening.gio.choice.where.path, QLatin1String(userList));
    QCOMPARE(opening.gio.choice.where.line, 3);
    QCOMPARE(int(fateOf(opening, "other.desktop")), int(Fate::Later));
    QVERIFY(opening.isOneForAll());
    QVERIFY(opening.proposal.isEmpty());

    machine.write("/home/u/.config/gnome-mimeapps.list", defaults("other.desktop"));
    QCOMPARE(machine.ofType("application/plan").gio.choice.entry, QStringLiteral("other.desktop"));
}

void OpenTest::eachEntryThatLosesHasItsReason_data()
{
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<int>("fate");
    QTest::addColumn<QString>("text");
    const QByteArray list = defaults("lost.desktop;right.desktop");
    const auto row = [](const char *name, const QByteArray &content, const QByteArray &entry,
                        Fate fate, const char *text) {
        QTest::newRow(name) << content << entry << int(fate) << QString::fromLatin1(text);
    };
    row("missing", list, {}, Fate::Fails, "it is not installed");
    row("TryExec", list, "TryExec=none\nExec=tool\n", Fate::Fails,
        "asks for the program none, which is not there");
    row("Exec", list, "Exec=none %f\n", Fate::Fails, "starts the program none, which");
    row("quote", list, "Exec=\"tool\n", Fate::Fails, "the command line in");
    row("type", list, "Type=Link\n", Fate::Fails, "is not the desktop entry of an application");
    row("broken", list, "no entry\n", Fate::Fails, "cannot be read as a desktop entry");
    row("removed",
        "[Removed Associations]\napplication/x-plan=lost.desktop\n" + defaults("right.desktop"),
        "Exec=tool\n", Fate::Removes, "");
    row("repeated", defaults("right.desktop;lost.desktop;lost.desktop"), "Exec=tool\n", Fate::Later,
        "");
}

void OpenTest::eachEntryThatLosesHasItsReason()
{
    QFETCH(QByteArray, list);
    QFETCH(QByteArray, entry);
    QFETCH(int, fate);
    QFETCH(QString, text);
    const OpenMachine machine;
    machine.entry("right.desktop");
    if (!entry.isEmpty())
        machine.entry("lost.desktop", entry);
    machine.write(userList, list);
    machine.write("/usr/share/applications/mimeinfo.cache",
                  "[MIME Cache]\napplication/x-plan=lost.desktop;right.desktop;\n");
    const Opening opening = machine.ofType();
    QCOMPARE(opening.gio.choice.entry, QStringLiteral("right.desktop"));
    QCOMPARE(int(fateOf(opening, "lost.desktop")), fate);
    const bool isSaid = Fate(fate) != Fate::Fails;
    QCOMPARE(opening.verdict == Opening::Verdict::Opens, isSaid);
    QVERIFY2(opening.text.contains(text), qPrintable(opening.text));
}

void OpenTest::aListWithALineThatIsNoneIsNotObeyed()
{
    const OpenMachine machine;
    machine.entry("right.desktop");
    machine.write(userList, defaults("right.desktop") + "what is this\n");
    const Opening opening = machine.ofType();
    QCOMPARE(int(opening.verdict), int(Opening::Verdict::Nothing));
    QVERIFY2(opening.text.contains(QLatin1String("line 3 is no entry")), qPrintable(opening.text));
    QCOMPARE(opening.xdgMime.entry, QStringLiteral("right.desktop"));
}

void OpenTest::aMoreGeneralTypeIsTakenAlsoInACircle()
{
    const OpenMachine machine;
    machine.entry("base.desktop");
    machine.write(userList, "[Default Applications]\napplication/x-base=base.desktop\n");
    const Opening opening = machine.ofType();
    QCOMPARE(opening.types,
             QStringList({QLatin1String(type), QStringLiteral("application/x-base")}));
    QCOMPARE(opening.gio.choice.entry, QStringLiteral("base.desktop"));
    QCOMPARE(opening.gio.choice.type, QStringLiteral("application/x-base"));
    // xdg-mime knows no more general types.
    QVERIFY(opening.xdgMime.entry.isEmpty());
    QCOMPARE(opening.proposal, QStringLiteral("base.desktop"));
}

void OpenTest::aFilesTypeComesFromItsNameOrItsContent()
{
    const OpenMachine machine;
    machine.write(
        "/usr/share/mime/magic",
        QByteArray("MIME-Magic\0\n[60:application/x-magic]\n>2=\0\4ABCD&\xff\xff\xff\xff+3\n"
                   "1>0=\0\1x\n",
                   62));
    machine.write("/d/a.plan", "x");
    machine.write("/d/rule", "x..ABCD");
    machine.write("/d/text", "words");
    machine.write("/d/empty.plan", "");
    const OpenQuestion question(machine.machine());
    const Opening plan = question.ofFile(QStringLiteral("/d/a.plan"));
    QCOMPARE(plan.found.type, QLatin1String(type));
    QCOMPARE(int(plan.found.how), int(FoundType::How::Name));
    QCOMPARE(plan.found.names.constFirst().where.line, 1);
    QCOMPARE(plan.found.names.constFirst().weight, 50);
    QCOMPARE(plan.package.path, QStringLiteral("/usr/share/mime/packages/plan.xml"));
    QCOMPARE(plan.package.line, 4);
    const FoundType rule = question.ofFile(QStringLiteral("/d/rule")).found;
    QCOMPARE(rule.type, QStringLiteral("application/x-magic"));
    QCOMPARE(rule.priority, 60);
    QCOMPARE(question.ofFile(QStringLiteral("/d/text")).found.type, QStringLiteral("text/plain"));
    QCOMPARE(int(question.ofFile(QStringLiteral("/d/empty.plan")).found.how),
             int(FoundType::How::Empty));
    QCOMPARE(question.ofFile(QStringLiteral("/d")).found.type, QStringLiteral("inode/directory"));
    QCOMPARE(question.ofFile(QStringLiteral("/none/b.plan")).found.type, QLatin1String(type));
    QCOMPARE(int(question.ofFile(QStringLiteral("/none/b.odd")).verdict),
             int(Opening::Verdict::Undecided));
}

void OpenTest::theToolsThatDifferAreNamed()
{
    const OpenMachine machine;
    machine.entry("hidden.desktop", "Exec=tool\nHidden=true\n");
    machine.entry("gnome.desktop", "Exec=tool\nNotShowIn=GNOME;\n");
    machine.entry("quoted.desktop", "Exec=\"tool\" %f\n");
    machine.entry("plain.desktop");
    machine.write(userList, defaults("hidden.desktop;gnome.desktop;plain.desktop"));
    QCOMPARE(machine.ofType().gio.choice.entry, QStringLiteral("hidden.desktop"));
    QCOMPARE(machine.ofType().kde.entry, QStringLiteral("plain.desktop"));
    machine.write(userList, defaults("quoted.desktop;plain.desktop"));
    const Opening opening = machine.ofType();
    QCOMPARE(opening.gio.choice.entry, QStringLiteral("quoted.desktop"));
    QVERIFY(opening.xdgMime.entry.isEmpty());
    QVERIFY(!opening.isOneForAll());
}

void OpenTest::xdgOpenHandsAFileToTheDesktop_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("program");
    const auto row = [](const char *variable, const char *value, const char *program) {
        QTest::addRow("%s=%s", variable, value)
            << QString::fromLatin1(variable) << QString::fromLatin1(value)
            << QString::fromLatin1(program);
    };
    row("XDG_CURRENT_DESKTOP", "GNOME-Classic:GNOME", "gio");
    row("XDG_CURRENT_DESKTOP", "ubuntu:GNOME", "");
    row("XDG_CURRENT_DESKTOP", "KDE", "kde-open5");
    row("XDG_CURRENT_DESKTOP", "XFCE", "gio");
    row("XDG_CURRENT_DESKTOP", "LXDE", "");
    row("XDG_CURRENT_DESKTOP", "LXQt", "");
    row("KDE_FULL_SESSION", "true", "kde-open5");
    row("DESKTOP_SESSION", "xfce", "gio");
}

void OpenTest::xdgOpenHandsAFileToTheDesktop()
{
    QFETCH(QString, variable);
    QFETCH(QString, value);
    const OpenMachine files;
    files.program("/usr/bin/gio");
    doctor::Machine machine = files.machine();
    machine.environment.remove(QStringLiteral("XDG_CURRENT_DESKTOP"));
    machine.environment.insert(QStringLiteral("KDE_SESSION_VERSION"), QStringLiteral("5"));
    machine.environment.insert(variable, value);
    QTEST(OpenQuestion(machine).ofType(QLatin1String(type)).xdgOpen, "program");
}

void OpenTest::officeDocumentsAreProposedToTheChosenSuite()
{
    constexpr char text[] = "application/vnd.oasis.opendocument.text";
    constexpr char word[] = "application/msword";
    const OpenMachine machine;
    for (const char *folder : {"/usr/lib/libreoffice", "/opt/libreoffice24.2"})
        machine.write((QByteArray(folder) + "/program/bootstraprc").constData(),
                      "[Bootstrap]\nProductKey=LibreOffice 7.4\n");
    machine.write("/usr/share/mime/globs2", "50:application/msword:*.doc\n");
    const QByteArray types =
        "Exec=tool %f\nMimeType=application/msword;" + QByteArray(text) + ";\n";
    machine.entry("archiver.desktop", types);
    machine.entry("libreoffice-draw.desktop");
    machine.entry("libreoffice-hidden.desktop", types + "NoDisplay=true\n");
    machine.entry("libreoffice-old.desktop", types + "TryExec=none\n");
    machine.entry("libreoffice-writer.desktop", types);
    machine.entry("libreoffice24.2-writer.desktop", types);
    const auto proposed = [&machine](const char *type) { return machine.ofType(type).proposal; };
    // A list that is not obeyed, so that something is to be proposed.
    machine.write("/home/u/.config/mimeapps.list", "what is this\n[Default Applications]\n" +
                                                       QByteArray(text) + "=x;\n" + word + "=x;\n");
    QCOMPARE(proposed(text), QStringLiteral("libreoffice-writer.desktop"));
    QCOMPARE(proposed(word), QStringLiteral("libreoffice-writer.desktop"));
    machine.write("/home/u/.config/office-assistant/suites/libreoffice", "/opt/libreoffice24.2\n");
    QCOMPARE(proposed(text), QStringLiteral("libreoffice24.2-writer.desktop"));
    // The suite itself comes first.
    machine.entry("vyr-office-vyr.desktop");
    QCOMPARE(proposed(word), QStringLiteral("vyr-office-vyr.desktop"));
    QCOMPARE(proposed(text), QStringLiteral("libreoffice24.2-writer.desktop"));
}

void OpenTest::otherDocumentsAreProposedToItWhereNothingOpensThem()
{
    const OpenMachine machine;
    machine.write("/usr/lib/libreoffice/program/bootstraprc",
                  "[Bootstrap]\nProductKey=LibreOffice 7.4\n");
    machine.entry("libreoffice-draw.desktop", "Exec=tool %f\nMimeType=application/x-plan;\n");
    QCOMPARE(machine.ofType().proposal, QStringLiteral("libreoffice-draw.desktop"));
    machine.entry("viewer.desktop");
    machine.write(userList, defaults("lost.desktop;viewer.desktop"));
    QCOMPARE(machine.ofType().proposal, QStringLiteral("viewer.desktop"));
    machine.write(userList,
                  "[Removed Associations]\napplication/x-plan=libreoffice-draw.desktop;\n");
    QCOMPARE(machine.ofType().proposal, QString());
}

void OpenTest::theRepairChangesOneLineAndNoOtherByte()
{
    const OpenMachine machine;
    machine.entry("right.desktop");
    const QByteArray start =
        "# mine \r\n\n[Added Associations]\ntext/x=a;\n[Default Applications]\n";
    const QByteArray end = "\n\ntext/y= b.desktop ;\n#end";
    machine.write(userList, start + "application/x-plan=lost.desktop" + end);
    const doctor::Plan plan = OpenQuestion(machine.machine())
                                  .repair(QLatin1String(type), QStringLiteral("right.desktop"));
    QCOMPARE(plan.refusal, QString());
    QCOMPARE(plan.changes.size(), 1);
    QCOMPARE(plan.changes.constFirst().after,
             std::optional(start + "application/x-plan=right.desktop;lost.desktop;" + end));
    machine.write(userList, *plan.changes.constFirst().after);
    QCOMPARE(machine.ofType().gio.choice.entry, QStringLiteral("right.desktop"));
    QVERIFY(!OpenQuestion(machine.machine())
                 .repair(QLatin1String(type), QStringLiteral("right.desktop"))
                 .refusal.isEmpty());
}

void OpenTest::aPipeOrAHugeFileAsListLeavesItUndecided()
{
    const OpenMachine machine;
    machine.entry("right.desktop");
    machine.write("/usr/share/applications/mimeapps.list", defaults("right.desktop"));
    QVERIFY(QDir().mkpath(machine.path("/home/u/.config")));
    QCOMPARE(::mkfifo(QFile::encodeName(machine.path(userList)).constData(), 0600), 0);
    Opening opening = machine.ofType();
    QCOMPARE(int(opening.verdict), int(Opening::Verdict::Undecided));
    QVERIFY2(opening.text.contains(QLatin1String(userList)), qPrintable(opening.text));
    // The rest is answered all the same.
    QCOMPARE(opening.gio.choice.entry, QStringLiteral("right.desktop"));
    QVERIFY(QFile::remove(machine.path(userList)));
    machine.write(userList, QByteArray(5 * 1024 * 1024, '\n'));
    opening = machine.ofType();
    QCOMPARE(int(opening.verdict), int(Opening::Verdict::Undecided));
}

void OpenTest::unreadableEntriesAndOddNamesDoNotStopTheAnswer()
{
    const OpenMachine machine;
    machine.entry("right.desktop");
    machine.entry("o\n\x1b[31mdd.desktop");
    QCOMPARE(
        ::mkfifo(
            QFile::encodeName(machine.path("/usr/share/applications/pipe.desktop")).constData(),
            0600),
        0);
    QVERIFY(QDir().mkpath(machine.path("/usr/share/applications/folder.desktop")));
    QVERIFY(QFile::link(QStringLiteral("."), machine.path("/usr/share/applications/loop")));
    machine.write(userList, defaults("pipe.desktop;folder.desktop;o\\n\x1b[31mdd.desktop;"));
    const Opening opening = machine.ofType();
    QCOMPARE(int(fateOf(opening, "pipe.desktop")), int(Fate::Fails));
    QCOMPARE(int(fateOf(opening, "folder.desktop")), int(Fate::Fails));
    QCOMPARE(opening.gio.choice.entry, QStringLiteral("o\n\x1b[31mdd.desktop"));
}

void OpenTest::tenThousandEntriesAreAnswered()
{
    const OpenMachine machine;
    QByteArray names;
    for (int number = 0; number < 10000; ++number)
        names += "entry" + QByteArray::number(number) + ".desktop;";
    for (int number = 0; number < 2000; ++number)
        machine.entry(("entry" + QByteArray::number(number) + ".desktop").constData(),
                      "Exec=none\n");
    machine.write(userList, defaults(names.constData()));
    const Opening opening = machine.ofType();
    QCOMPARE(int(opening.verdict), int(Opening::Verdict::Nothing));
    QCOMPARE(opening.gio.statements.size(), 10000);
}

QTEST_GUILESS_MAIN(OpenTest)
#include "tst_open.moc"
