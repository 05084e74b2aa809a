#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include "tests/support/patience.h"
#include "tests/support/privatehome.h"

namespace {

const QString host = QStringLiteral(SUITE_OFFICE_DIR "/libhelio.so");
const QString plugin =
    QStringLiteral(SUITE_OFFICE_DIR "/addons/vyrassistanttool/libofficeassistant.so");

/// The dynamic symbols of a library, demangled, each once and in order.
QStringList dynamicSymbols(const QString &library, const QString &which)
{
    QProcess nm;
    nm.start(QStringLiteral("nm"), {QStringLiteral("--dynamic"), QStringLiteral("--demangle"),
                                    QStringLiteral("--format=posix"), which, library});
    if (!nm.waitForFinished(testsupport::longestWaitMs) || nm.exitCode() != 0)
        qFatal("nm: %s", nm.readAllStandardError().constData());
    QStringList symbols;
    for (const QString &line : QString::fromUtf8(nm.readAllStandardOutput()).split(u'\n'))
        // The name, which may have spaces in it, its type, and its address if it is defined.
        if (const int end = line.indexOf(QRegularExpression(QStringLiteral(" [A-Za-z]( |$)")));
            end > 0)
            // With Qt 6 the class is another name of the template.
            symbols << line.left(end).replace(QLatin1String("QList<QString>"),
                                              QLatin1String("QStringList"));
    symbols.sort();
    symbols.removeDuplicates();
    return symbols;
}

QStringList definedBy(const QString &library)
{
    return dynamicSymbols(library, QStringLiteral("--defined-only"));
}

QStringList committedList(const QString &name)
{
    const QByteArray text =
        testsupport::readFile(QStringLiteral(TEST_DATA_DIR "/plugin/symbols/") + name);
    return QString::fromUtf8(text).split(u'\n', Qt::SkipEmptyParts);
}

/// What only one of two lists has, marked like a difference.
QStringList difference(const QStringList &actual, const QStringList &expected)
{
    QStringList marked;
    for (const QString &symbol : actual)
        if (!expected.contains(symbol))
            marked << QLatin1Char('+') + symbol;
    for (const QString &symbol : expected)
        if (!actual.contains(symbol))
            marked << QLatin1Char('-') + symbol;
    return marked;
}

} // namespace

/// The border between the built plug-in and the shell's library, as the linker sees it.
class ExportedSymbolsTest : public QObject
{
    Q_OBJECT

private slots:
    void theShellsLibraryOffersWhatTheListsName()
    {
        const QStringList offered = committedList(QStringLiteral("declaredbyhost.txt")) +
                                    committedList(QStringLiteral("heliointernals.txt"));
        QCOMPARE(difference(definedBy(host), offered), QStringList());
    }

    void thePluginOffersNothing() { QCOMPARE(definedBy(plugin), QStringList()); }

    void thePluginTakesFromItsShellWhatTheListNames()
    {
        const QStringList offered = definedBy(host);
        QStringList taken;
        for (const QString &symbol : dynamicSymbols(plugin, QStringLiteral("--undefined-only")))
            if (offered.contains(symbol))
                taken << symbol;
        QCOMPARE(difference(taken, committedList(QStringLiteral("takenbyplugin.txt"))),
                 QStringList());
    }

    void thePluginTakesNothingThatHostDoesNotDeclare()
    {
        const QStringList declared = committedList(QStringLiteral("declaredbyhost.txt"));
        for (const QString &symbol : committedList(QStringLiteral("takenbyplugin.txt")))
            QVERIFY2(declared.contains(symbol), qPrintable(symbol));
    }

    void theLibrariesKeepTheNamesThatShellsLoadThemBy()
    {
        for (const QString &library : {host, plugin}) {
            QProcess objdump;
            objdump.start(QStringLiteral("objdump"), {QStringLiteral("-p"), library});
            QVERIFY(objdump.waitForFinished(testsupport::longestWaitMs));
            const QString name = QRegularExpression::escape(library.section(u'/', -1));
            const QRegularExpression soname(QStringLiteral("SONAME +%1\n").arg(name));
            QVERIFY(QString::fromUtf8(objdump.readAllStandardOutput()).contains(soname));
        }
    }
};

QTEST_GUILESS_MAIN(ExportedSymbolsTest)

#include "tst_exportedsymbols.moc"
