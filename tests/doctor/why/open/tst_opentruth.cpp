#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include "doctor/why/open/open.h"
#include "tests/doctor/why/open/generatedsession.h"
#include "tests/doctor/why/open/toolrun.h"

namespace {

/// OPEN_SESSIONS asks for more, from OPEN_FIRST_SESSION on; QTEST_FUNCTION_TIMEOUT gives them time.
constexpr int usualSessions = 25;
/// Each row has a time limit of its own.
constexpr int rowSize = 100;

constexpr char fileNames[] =
    "README x a.C a.c A.DOCX a.tar.gz Makefile a.desktop core .hidden a.xml "
    "a.sub a.ogg a.unknown a~ a.bak a.pdf.part";

/// The beginnings of files of many kinds.
QVector<QByteArray> contents()
{
    return {QByteArray(),
            "words\n",
            "%PDF-1.4\n",
            QByteArray("PK\3\4\0\0", 6),
            QByteArray("\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1", 8) + QByteArray(600, '\0'),
            QByteArray("\x89PNG\r\n\x1a\n\0\0", 10),
            "{\\rtf1 x}",
            "#!/bin/sh\n",
            "[Desktop Entry]\nType=Application\n",
            "<?xml version=\"1.0\"?><svg/>",
            "\x7f"
            "ELF\2\1\1" +
                QByteArray(9, '\0') + QByteArray("\2\0\x3e\0", 4),
            QByteArray(40, '\0'),
            "\xff\xfe",
            QByteArray("\x1f\x8b\b\0", 4),
            "OggS",
            "<html><body>",
            "MSCF",
            QByteArray(257, 'x') + QByteArray("ustar\0", 6)};
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
    void choicesEqualThoseOfTheToolsInGeneratedSessions_data();
    void choicesEqualThoseOfTheToolsInGeneratedSessions();
    void theSessionsWereOfManyKinds();
    void typesOfFilesEqualThoseOfGio();

private:
    void ask(GeneratedSession &session, int number);

    int m_asked = 0;
    int m_disagreements = 0;
    int m_opened = 0;
    int m_different = 0;
    QMap<doctor::Fate, int> m_fates;
};

void OpenTruthTest::ask(GeneratedSession &session, int number)
{
    ++m_asked;
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
    qWarning("session %d, %s: gio \"%s\", predicted \"%s\"; xdg-mime \"%s\", predicted \"%s\"",
             number, qPrintable(type), qPrintable(gioTruth), qPrintable(gio.choice.entry),
             qPrintable(xdgMimeTruth), qPrintable(xdgMime.entry));
}

void OpenTruthTest::choicesEqualThoseOfTheToolsInGeneratedSessions_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("end");
    const int wanted = qEnvironmentVariableIntValue("OPEN_SESSIONS");
    const int start = qEnvironmentVariableIntValue("OPEN_FIRST_SESSION");
    const int end = start + (wanted > 0 ? wanted : usualSessions);
    for (int first = start; first < end; first += rowSize)
        QTest::addRow("from %d", first) << first << std::min(first + rowSize, end);
}

void OpenTruthTest::choicesEqualThoseOfTheToolsInGeneratedSessions()
{
    for (const char *tool : {"gio", "xdg-mime"}) {
        if (QStandardPaths::findExecutable(QLatin1String(tool)).isEmpty())
            QSKIP("gio or xdg-mime is not installed");
    }
    QFETCH(int, first);
    QFETCH(int, end);
    const int before = m_disagreements;
    for (int number = first; number < end; ++number) {
        QTemporaryDir directory;
        QVERIFY(directory.isValid());
        GeneratedSession session(directory.path(), static_cast<unsigned>(number));
        ask(session, number);
    }
    QCOMPARE(m_disagreements, before);
}

void OpenTruthTest::theSessionsWereOfManyKinds()
{
    if (m_asked == 0)
        QSKIP("nothing was compared");
    qInfo("%d sessions: %d types open, in %d the tools differ, %d disagreements", m_asked, m_opened,
          m_different, m_disagreements);
    QVERIFY(m_opened > m_asked / 5);
    QVERIFY(m_different > m_asked / 10);
    for (const doctor::Fate fate :
         {doctor::Fate::Decides, doctor::Fate::Later, doctor::Fate::Repeated, doctor::Fate::Removed,
          doctor::Fate::Removes, doctor::Fate::RemovesLate, doctor::Fate::Masked,
          doctor::Fate::NotObeyed, doctor::Fate::Fails})
        QVERIFY2(m_fates.value(fate) > 0, qPrintable(QString::number(int(fate))));
}

/// With the types that are installed: every kind of name with every kind of content.
void OpenTruthTest::typesOfFilesEqualThoseOfGio()
{
    if (QStandardPaths::findExecutable(QStringLiteral("gio")).isEmpty())
        QSKIP("gio is not installed");
    QStringList names = QString::fromLatin1(fileNames).split(QLatin1Char(' '));
    for (const QString &suffix : doctor::OpenQuestion::suffixes())
        names.append(QStringLiteral("a.") + suffix);
    QTemporaryDir directory;
    QStringList paths;
    for (const QByteArray &content : contents()) {
        const QString folder = directory.filePath(QString::number(paths.size()));
        QVERIFY(QDir().mkdir(folder));
        for (const QString &name : qAsConst(names)) {
            paths.append(folder + QLatin1Char('/') + name);
            QFile file(paths.constLast());
            QVERIFY(file.open(QIODevice::WriteOnly));
            QCOMPARE(file.write(content), qint64(content.size()));
        }
    }
    const QStringList command{QStringLiteral("gio"), QStringLiteral("info"), QStringLiteral("-a"),
                              QStringLiteral("standard::content-type")};
    QStringList truths;
    for (const QString &line : run(command + paths, {}).split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("  standard::content-type: ")))
            truths.append(line.section(QStringLiteral(": "), 1));
    }
    QCOMPARE(truths.size(), paths.size());
    const doctor::OpenPlaces places = doctor::openPlaces({});
    const doctor::MimeTypes types(places);
    QStringList wrong;
    for (int number = 0; number < paths.size(); ++number) {
        const QString found = doctor::typeOfFile(paths.at(number), places, types).type;
        if (found != truths.at(number))
            wrong.append(QStringLiteral("%1: gio %2, found %3")
                             .arg(paths.at(number), truths.at(number), found));
    }
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char('\n'))));
}

QTEST_GUILESS_MAIN(OpenTruthTest)
#include "tst_opentruth.moc"
