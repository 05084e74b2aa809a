#include <QTest>

#include "doctor/conditions/texttemplate.h"

class TextTemplateTest : public QObject
{
    Q_OBJECT

private slots:
    void aValueThatIsEmptyGivesTheTextBehindIt()
    {
        const QString text = QStringLiteral("opens with {entry:-nothing}");
        const QString entry = QStringLiteral("entry");
        QCOMPARE(doctor::filledIn(text, {{entry, QStringLiteral("a.desktop")}}),
                 QStringLiteral("opens with a.desktop"));
        QCOMPARE(doctor::filledIn(text, {{entry, QString()}}),
                 QStringLiteral("opens with nothing"));
        QCOMPARE(doctor::filledIn(text, {}), QStringLiteral("opens with nothing"));
        QCOMPARE(doctor::placeholdersOf(text), QStringList{entry});
        QVERIFY(doctor::templateProblem(text).isEmpty());
        QVERIFY(!doctor::templateProblem(QStringLiteral("{entry:text}")).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TextTemplateTest)
#include "tst_texttemplate.moc"
