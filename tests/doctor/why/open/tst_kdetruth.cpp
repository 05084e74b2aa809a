#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include "doctor/why/open/kdechoice.h"
#include "doctor/why/open/open.h"
#include "tests/doctor/why/open/generatedsession.h"
#include "tests/doctor/why/open/toolrun.h"

namespace {

/// Of 100 sessions. KDE's own order among equal entries is not known, nor all of what it does with
/// broken entries.
constexpr int leastAgreements = 80;
constexpr int rowSize = 100;

constexpr char menu[] =
    "<!DOCTYPE Menu PUBLIC \"-//freedesktop//DTD Menu 1.0//EN\" "
    "\"http://www.freedesktop.org/standards/menu-spec/1.0/menu.dtd\">\n"
    "<Menu><Name>Applications</Name><DefaultAppDirs/><Include><All/></Include></Menu>\n";

void write(const QString &path, const QByteArray &content)
{
    QVERIFY(QDir().mkpath(path.section(QLatin1Char('/'), 0, -2)));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

/// A package that says the same of types as the lists that a session has, but for circles, in which
/// KDE's tool does not end. KDE reads only what update-mime-database makes of packages.
QByteArray package(const doctor::MimeTypes &types)
{
    const QStringList names{QStringLiteral("application/x-a"), QStringLiteral("application/x-b"),
                            QStringLiteral("application/x-a.b"),
                            QStringLiteral("application/x-a+b"), QStringLiteral("text/x-c")};
    QString text = QStringLiteral("<?xml version=\"1.0\"?>\n<mime-info xmlns=\""
                                  "http://www.freedesktop.org/standards/shared-mime-info\">\n");
    for (const QString &name : names) {
        text += QStringLiteral("<mime-type type=\"%1\"><comment>x</comment>").arg(name);
        for (const QString &parent : types.withParents(name)) {
            if (names.indexOf(parent) > names.indexOf(name))
                text += QStringLiteral("<sub-class-of type=\"%1\"/>").arg(parent);
        }
        if (name == names.constFirst())
            text += QStringLiteral("<alias type=\"application/x-alias\"/>");
        text += QStringLiteral("</mime-type>\n");
    }
    return text.toUtf8() + "</mime-info>\n";
}

/// Gives the session what KDE's cache of desktop entries is built from, and builds it.
void prepare(const GeneratedSession &session, const QString &root)
{
    const QByteArray types = package(doctor::MimeTypes(doctor::openPlaces(session.machine())));
    for (const char *folder : {"/data", "/share1", "/share2"})
        QDir(root + QLatin1String(folder) + QStringLiteral("/mime")).removeRecursively();
    write(root + QStringLiteral("/share2/mime/packages/x.xml"), types);
    for (const char *name : {"kf5-applications.menu", "odd-applications.menu"})
        write(root + QStringLiteral("/etc1/menus/") + QLatin1String(name), menu);
    run({QStringLiteral("update-mime-database"), root + QStringLiteral("/share2/mime")},
        session.environment);
    run({QStringLiteral("kbuildsycoca5"), QStringLiteral("--noincremental")}, session.environment);
}

/// The file of the preferred entry.
QString kdeAnswer(const QString &type, const QHash<QString, QString> &variables)
{
    const QString offers = run({QStringLiteral("ktraderclient5"), QStringLiteral("--mimetype"),
                                type, QStringLiteral("--short")},
                               variables);
    for (const QString &line : offers.split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1Char('/')))
            return QDir::cleanPath(line);
    }
    return {};
}

} // namespace

/// What KDE is said to open a type with, beside what its own tools answer.
class KdeTruthTest : public QObject
{
    Q_OBJECT

private slots:
    void mostChoicesEqualThoseOfKdeInGeneratedSessions_data();
    void mostChoicesEqualThoseOfKdeInGeneratedSessions();
};

void KdeTruthTest::mostChoicesEqualThoseOfKdeInGeneratedSessions_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("end");
    const int start = qEnvironmentVariableIntValue("OPEN_FIRST_SESSION");
    const int end = start + std::max(qEnvironmentVariableIntValue("OPEN_KDE_SESSIONS"), 1);
    for (int first = start; first < end; first += rowSize)
        QTest::addRow("from %d", first) << first << std::min(first + rowSize, end);
}

void KdeTruthTest::mostChoicesEqualThoseOfKdeInGeneratedSessions()
{
    if (!qEnvironmentVariableIsSet("OPEN_KDE_SESSIONS"))
        QSKIP("OPEN_KDE_SESSIONS is how many sessions to compare, with the package kde-cli-tools");
    for (const char *tool : {"update-mime-database", "kbuildsycoca5", "ktraderclient5"}) {
        if (QStandardPaths::findExecutable(QLatin1String(tool)).isEmpty())
            QSKIP("KDE's tools are not installed");
    }
    QFETCH(const int, first);
    QFETCH(const int, end);
    int disagreements = 0;
    int opened = 0;
    for (int number = first; number < end; ++number) {
        QTemporaryDir directory;
        QVERIFY(directory.isValid());
        GeneratedSession session(directory.path(), static_cast<unsigned>(number));
        session.environment.insert(QStringLiteral("XDG_CACHE_HOME"),
                                   directory.filePath(QStringLiteral("cache")));
        session.environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        session.environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                                   QStringLiteral("disabled:"));
        prepare(session, directory.path());
        const QString type = session.type();
        const doctor::OpenPlaces places = doctor::openPlaces(session.machine());
        const doctor::MimeTypes types(places);
        const doctor::OpenChoice predicted =
            doctor::KdeChoices(places, doctor::AssociationLists(places, types),
                               doctor::DesktopEntries(places), types)
                .choice(type);
        const QString truth = kdeAnswer(type, session.environment);
        opened += truth.isEmpty() ? 0 : 1;
        if (QDir::cleanPath(predicted.path) == truth ||
            (predicted.path.isEmpty() && truth.isEmpty()))
            continue;
        ++disagreements;
        qWarning("session %d, %s: KDE \"%s\", predicted \"%s\" by %s:%d", number, qPrintable(type),
                 qPrintable(truth), qPrintable(predicted.path), qPrintable(predicted.where.path),
                 predicted.where.line);
    }
    qInfo("%d types open, %d disagreements", opened, disagreements);
    QVERIFY(100 * (end - first - disagreements) >= leastAgreements * (end - first));
}

QTEST_GUILESS_MAIN(KdeTruthTest)
#include "tst_kdetruth.moc"
