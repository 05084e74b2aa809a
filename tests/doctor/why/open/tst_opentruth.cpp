#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include "doctor/why/open/giochoice.h"
#include "doctor/why/open/mimetypes.h"
#include "doctor/why/open/xdgchoice.h"
#include "tests/doctor/why/open/generatedsession.h"

namespace {

constexpr int usualSessions = 50;
constexpr int questions = 2;
constexpr int timeLimit = 20000;

QString run(const QStringList &command, const QHash<QString, QString> &variables)
{
    QProcess process;
    QProcessEnvironment environment;
    for (auto each = variables.begin(); each != variables.end(); ++each)
        environment.insert(each.key(), each.value());
    process.setProcessEnvironment(environment);
    process.start(QStandardPaths::findExecutable(command.first()), command.mid(1));
    if (!process.waitForFinished(timeLimit))
        qFatal("%s does not end", qPrintable(command.join(QLatin1Char(' '))));
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// "Default application for “application/x”: a.desktop"
QString gioAnswer(const QString &type, const QHash<QString, QString> &variables)
{
    const QString line = run({QStringLiteral("gio"), QStringLiteral("mime"), type}, variables)
                             .section(QLatin1Char('\n'), 0, 0);
    return line.startsWith(QLatin1String("Default")) ? line.section(QStringLiteral(": "), 1)
                                                     : QString();
}

QString xdgMimeAnswer(const QString &type, const QHash<QString, QString> &variables)
{
    QString answer =
        run({QStringLiteral("xdg-mime"), QStringLiteral("query"), QStringLiteral("default"), type},
            variables);
    answer.chop(1);
    return answer;
}

} // namespace

/// What is said to open a type equals what the tools of this machine answer.
class OpenTruthTest : public QObject
{
    Q_OBJECT

private slots:
    void choicesEqualThoseOfTheToolsInGeneratedSessions();

private:
    void ask(GeneratedSession &session, int number);

    int m_disagreements = 0;
    int m_opened = 0;
    int m_different = 0;
    QMap<doctor::Fate, int> m_fates;
};

void OpenTruthTest::ask(GeneratedSession &session, int number)
{
    const QString type = session.type();
    const doctor::OpenPlaces places = doctor::openPlaces(session.machine());
    const doctor::MimeTypes types(places);
    const doctor::AssociationLists lists(places, types);
    const doctor::GioChoice gio =
        doctor::gioChoice(lists, doctor::DesktopEntries(places), types.withParents(type));
    const doctor::OpenChoice xdgMime = doctor::XdgMime(places, lists).choice(type);
    const QString gioTruth = gioAnswer(type, session.environment);
    const QString xdgMimeTruth = xdgMimeAnswer(type, session.environment);
    for (const doctor::Statement &statement : gio.statements)
        ++m_fates[statement.fate];
    m_opened += gioTruth.isEmpty() ? 0 : 1;
    m_different += gioTruth == xdgMimeTruth ? 0 : 1;
    if (gio.choice.entry == gioTruth && xdgMime.entry == xdgMimeTruth)
        return;
    ++m_disagreements;
    qWarning("%s session %d, %s: gio \"%s\", predicted \"%s\"; xdg-mime \"%s\", predicted \"%s\"",
             qPrintable(session.environment.value(QStringLiteral("HOME"))), number,
             qPrintable(type), qPrintable(gioTruth), qPrintable(gio.choice.entry),
             qPrintable(xdgMimeTruth),
             qPrintable(xdgMime.entry + QLatin1Char('@') + xdgMime.where.path +
                        QString::number(xdgMime.where.line)));
}

void OpenTruthTest::choicesEqualThoseOfTheToolsInGeneratedSessions()
{
    for (const char *tool : {"gio", "xdg-mime"}) {
        if (QStandardPaths::findExecutable(QLatin1String(tool)).isEmpty())
            QSKIP("gio or xdg-mime is not installed");
    }
    const int wanted = qEnvironmentVariableIntValue("OPEN_SESSIONS");
    const int first = qEnvironmentVariableIntValue("OPEN_FIRST_SESSION");
    const int sessions = wanted > 0 ? wanted : usualSessions;
    for (int number = first; number < first + sessions; ++number) {
        QTemporaryDir directory;
        QVERIFY(directory.isValid());
        directory.setAutoRemove(!qEnvironmentVariableIsSet("OPEN_KEEP"));
        GeneratedSession session(directory.path(), static_cast<unsigned>(number));
        for (int count = 0; count < questions; ++count)
            ask(session, number);
    }
    qInfo("%d sessions: %d types open, in %d the tools differ, %d disagreements", sessions,
          m_opened, m_different, m_disagreements);
    QCOMPARE(m_disagreements, 0);
    QVERIFY(m_opened > sessions / 2);
    QVERIFY(m_different > sessions / 10);
    for (const doctor::Fate fate :
         {doctor::Fate::Decides, doctor::Fate::Later, doctor::Fate::Repeated, doctor::Fate::Removed,
          doctor::Fate::Removes, doctor::Fate::RemovesLate, doctor::Fate::Masked,
          doctor::Fate::NotObeyed, doctor::Fate::Fails})
        QVERIFY2(m_fates.value(fate) > 0, qPrintable(QString::number(int(fate))));
}

QTEST_GUILESS_MAIN(OpenTruthTest)
#include "tst_opentruth.moc"
