#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#include "helio/doctor/checkups/checkuphistory.h"

using helio::Checkup;
using helio::CheckupChange;
using helio::CheckupHistory;

namespace {

const QDateTime start = QDateTime::fromString(QStringLiteral("2026-03-01T08:00:00Z"), Qt::ISODate);

Checkup after(int minutes, const QStringList &found, const QStringList &well = {},
              const QStringList &failed = {})
{
    return {{}, start.addSecs(minutes * 60), found, well, failed};
}

} // namespace

class CheckupHistoryTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_file = m_directory->filePath(QStringLiteral("state/checkups.json"));
    }

    void theFirstCheckUpHasNothingToCompareWith()
    {
        const CheckupHistory history(m_file);
        QVERIFY(history.read().isEmpty());
        QVERIFY(!QFileInfo::exists(m_file));
        const CheckupChange change = history.add(after(0, {QStringLiteral("a")}));
        QVERIFY(!change.last.isValid());
        QCOMPARE(change.since, start);
        QVERIFY(change.fixed.isEmpty() && change.appeared.isEmpty());
        QCOMPARE(change.problem, QString());
    }

    void whatWasFixedAndWhatIsNewIsTold()
    {
        const CheckupHistory history(m_file);
        history.add(after(0, {QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("c")}));
        const CheckupChange change =
            history.add(after(5, {QStringLiteral("c"), QStringLiteral("d")}, {QStringLiteral("a")},
                              {QStringLiteral("b")}));
        QCOMPARE(change.last, start);
        QCOMPARE(change.since, start.addSecs(300));
        QCOMPARE(change.fixed, QStringList{QStringLiteral("a")});
        QCOMPARE(change.appeared, QStringList{QStringLiteral("d")});
    }

    void theSameOutcomeKeepsItsBeginning()
    {
        const CheckupHistory history(m_file);
        history.add(after(0, {QStringLiteral("a")}));
        const CheckupChange change = history.add(after(5, {QStringLiteral("a")}));
        QCOMPARE(change.since, start);
        QCOMPARE(history.read().size(), 1);
        QCOMPARE(history.read().first().until, start.addSecs(300));
    }

    void onlyTheUserMayReadIt()
    {
        CheckupHistory(m_file).add(after(0, {}));
        QCOMPARE(QFileInfo(m_file).permissions() &
                     (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
                 QFile::Permissions());
    }

    void itStaysSmall()
    {
        const CheckupHistory history(m_file);
        for (int minute = 0; minute < 60; ++minute)
            history.add(after(minute, {QString::number(minute)}));
        QCOMPARE(history.read().size(), 50);
        QCOMPARE(history.read().last().found, QStringList{QStringLiteral("59")});
    }

    void rubbishInTheFileIsReplaced_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("text") << QByteArray("rubbish");
        QTest::newRow("cut") << QByteArray("[{\"since\":\"2026-03-01T08:00");
        QTest::newRow("object") << QByteArray("{\"since\":1}");
        QTest::newRow("wrong values") << QByteArray("[1,null,{\"since\":1,\"until\":[]}]");
        QTest::newRow("backwards") << QByteArray(
            "[{\"since\":\"2026-03-01T08:00:00Z\",\"until\":\"2026-02-01T08:00:00Z\"}]");
        QTest::newRow("too large") << QByteArray(2 * 1024 * 1024, '[');
    }

    void rubbishInTheFileIsReplaced()
    {
        QFETCH(const QByteArray, content);
        const CheckupHistory history(m_file);
        QDir().mkpath(QFileInfo(m_file).path());
        QFile file(m_file);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        QVERIFY(history.read().isEmpty());
        QVERIFY(!history.add(after(5, {QStringLiteral("a")})).last.isValid());
        QCOMPARE(history.read().size(), 1);
    }

    void checkUpsFromBeforeTheClockWasSetBackGo()
    {
        const CheckupHistory history(m_file);
        history.add(after(0, {QStringLiteral("a")}));
        history.add(after(90, {QStringLiteral("b")}));
        QCOMPARE(history.add(after(5, {QStringLiteral("a")})).since, start);
    }

    void aPlaceThatCannotBeWrittenIsSaid()
    {
        QVERIFY(!CheckupHistory(QStringLiteral("/proc/none/checkups.json"))
                     .add(after(0, {}))
                     .problem.isEmpty());
    }

private:
    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_file;
};

QTEST_GUILESS_MAIN(CheckupHistoryTest)
#include "tst_checkuphistory.moc"
