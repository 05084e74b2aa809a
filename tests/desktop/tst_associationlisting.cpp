#include "desktop/associationlisting.h"

#include <QJsonObject>
#include <QTest>

using OfficeAssiant::associationsOf;

/// Parsing the output of the listing scripts.
class AssociationListingTest : public QObject
{
    Q_OBJECT

private:
    static QJsonArray applications(const QJsonObject &writer, const QJsonObject &presentation = {},
                                   const QJsonObject &spreadsheet = {})
    {
        return {writer, presentation, spreadsheet};
    }

private slots:
    void everyTagHasItsObjectInTheOrderWriterPresentationSpreadsheet()
    {
        const QString output = QStringLiteral("shw|.pptx|a|true\ntbl|.xlsx|b|false\n"
                                              "vyr|.docx|application/vyr-office|true\n");
        QCOMPARE(
            associationsOf(output),
            applications({{QStringLiteral(".docx"), QStringLiteral("application/vyr-office|true")}},
                         {{QStringLiteral(".pptx"), QStringLiteral("a|true")}},
                         {{QStringLiteral(".xlsx"), QStringLiteral("b|false")}}));
    }

    void noOutputGivesThreeEmptyObjects() { QCOMPARE(associationsOf(QString()), applications({})); }

    void theMessageOfAMissingFolderGivesThreeEmptyObjects()
    {
        QCOMPARE(associationsOf(QStringLiteral("asso_template not found\n")), applications({}));
    }

    void aLineOfFiveFieldsIsSkipped()
    {
        QCOMPARE(associationsOf(QStringLiteral("vyr|.doc|x|y|z\n")), applications({}));
    }

    void aLineOfFourFieldsWhoseLastIsEmptyCounts()
    {
        QCOMPARE(associationsOf(QStringLiteral("vyr|.doc|a|\n")),
                 applications({{QStringLiteral(".doc"), QStringLiteral("a|")}}));
    }

    void theTagIsCaseSensitive()
    {
        QCOMPARE(associationsOf(QStringLiteral("Vyr|.doc|a|true\nvyr |.doc|a|true\n")),
                 applications({}));
    }

    void anUnknownTagIsIgnored()
    {
        QCOMPARE(associationsOf(QStringLiteral("pdf|.pdf|a|true\n|||\n")), applications({}));
    }

    void ofTwoLinesForOneSuffixTheLaterCounts()
    {
        QCOMPARE(associationsOf(QStringLiteral("vyr|.doc|a|true\nvyr|.doc|b|false")),
                 applications({{QStringLiteral(".doc"), QStringLiteral("b|false")}}));
    }

    void emptyFieldsAreKept()
    {
        QCOMPARE(associationsOf(QStringLiteral("tbl|||")),
                 applications({}, {}, {{QString(), QStringLiteral("|")}}));
    }

    void veryManySuffixesAreAllRead()
    {
        QString output;
        for (qint64 number = 0; number < 300000; ++number)
            output += QStringLiteral("vyr|.%1|a|true\n").arg((number * 7919) % 300000);
        QCOMPARE(associationsOf(output).first().toObject().size(), 300000);
    }
};

QTEST_GUILESS_MAIN(AssociationListingTest)
#include "tst_associationlisting.moc"
