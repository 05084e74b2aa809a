#include <QTest>

#include "helio/ctl/linebuffer.h"

namespace {

constexpr int longest = 8;

/// All whole lines; "!" stands for one that was too long.
QByteArrayList linesOf(ctl::LineBuffer &buffer)
{
    QByteArrayList lines;
    while (const auto line = buffer.takeLine())
        lines.append(line->isTooLong ? QByteArray("!") : line->text);
    return lines;
}

} // namespace

/// The lines of a session's input.
class LineBufferTest : public QObject
{
    Q_OBJECT

private slots:
    void linesAreCutWhereverThePiecesEnd_data()
    {
        QTest::addColumn<int>("piece");
        for (int piece = 1; piece <= 40; ++piece)
            QTest::addRow("%d bytes a piece", piece) << piece;
    }

    void linesAreCutWhereverThePiecesEnd()
    {
        QFETCH(int, piece);
        const QByteArray input("one\n\n12345678\n123456789\ntwo\n1234567890123456\n\nthree");
        ctl::LineBuffer buffer(longest);
        QByteArrayList lines;
        for (int begin = 0; begin < input.size(); begin += piece) {
            const QByteArray bytes = input.mid(begin, piece);
            buffer.append(bytes.constData(), bytes.size());
            lines += linesOf(buffer);
        }
        const QByteArrayList expected{"one", "", "12345678", "!", "two", "!", ""};
        QCOMPARE(lines, expected);
        QVERIFY(buffer.isInLine());
        buffer.append("\n", 1);
        QCOMPARE(linesOf(buffer), QByteArrayList{"three"});
        QVERIFY(!buffer.isInLine());
    }

    void aLineThatIsTooLongAtTheEndIsToldToo()
    {
        ctl::LineBuffer buffer(longest);
        buffer.append("1234567890", 10);
        QVERIFY(linesOf(buffer).isEmpty());
        QVERIFY(buffer.isInLine());
        buffer.append("\n", 1);
        QCOMPARE(linesOf(buffer), QByteArrayList{"!"});
    }

    /// In quadratic time it takes longer than a test may.
    void aLongLineIsReadInLinearTime()
    {
        constexpr int pieces = 4096;
        const QByteArray piece(65536, 'x');
        ctl::LineBuffer buffer(pieces * piece.size());
        for (int count = 0; count < pieces; ++count) {
            buffer.append(piece.constData(), piece.size());
            QVERIFY(!buffer.takeLine());
        }
        buffer.append("\n", 1);
        const auto line = buffer.takeLine();
        QVERIFY(line && !line->isTooLong);
        QCOMPARE(line->text.size(), pieces * piece.size());
    }
};

QTEST_GUILESS_MAIN(LineBufferTest)
#include "tst_linebuffer.moc"
