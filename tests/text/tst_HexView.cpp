#include "text/HexView.h"

#include "support/Rows.h"
#include "text/ListedLines.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

using Column = HexStorage::Column;

SharedBytes shared(const QByteArray& bytes)
{
    return SharedBytes::ofString(bytes.toStdString());
}

QString shownSpan(HexView::Span span)
{
    return u"%1-%2"_s.arg(span.begin).arg(span.end);
}

} // namespace

class TestHexView : public QObject
{
    Q_OBJECT

private slots:
    void laysLinesOut_data();
    void laysLinesOut();
    void placesLeadToBytesAndBack();
    void marksStrayBytes();
    void keysMoveByBytes_data();
    void keysMoveByBytes();
    void mouseSelectsBytes();
    void copiesBytes_data();
    void copiesBytes();
};

using LaysLinesOut = Rows<QByteArray, QStringList>;

void TestHexView::laysLinesOut_data()
{
    const LaysLinesOut row;
    const QByteArray sixteen("%PDF-1.7\n\0\x7F\x80\xFF abc", 16);
    const QString whole
        = u"00000000  25 50 44 46 2D 31 2E 37  0A 00 7F 80 FF 20 61 62  %PDF-1.7····· ab"_s;
    row("empty", {}, {u"00000000  "_s});
    row("15 bytes", sixteen.chopped(1), {whole.chopped(21) + u"     %PDF-1.7····· a"_s});
    row("16 bytes: the last line tells the size", sixteen, {whole, u"00000010  "_s});
    row("17 bytes", sixteen + '~',
        {whole, u"00000010  7E                                                ~"_s});
}

void TestHexView::laysLinesOut()
{
    const auto [bytes, lines] = LaysLinesOut::fetch();
    const HexStorage storage(shared(bytes));
    QCOMPARE(linesOf(storage), lines);
    for (qsizetype index = 0; index < lines.size(); ++index) {
        QCOMPARE(storage.lineLength(index), lines[index].size());
        QCOMPARE(storage.line(index, 7, 30).text, lines[index].mid(7, 30)); // a stretch of it
    }
}

void TestHexView::placesLeadToBytesAndBack()
{
    for (const int size : {0, 1, 15, 16, 17, 40}) {
        const HexStorage storage(shared(QByteArray(size, 'x')));
        for (std::size_t byte = 0; byte <= std::size_t(size); ++byte) {
            for (const Column column : {Column::isHex, Column::isText})
                QCOMPARE(storage.byteAt(storage.positionOf(byte, column)), byte);
        }
        // Whatever place is asked for, there is a byte or the end.
        for (qsizetype line = 0; line < storage.lineCount(); ++line) {
            for (qsizetype unit = 0; unit <= storage.lineLength(line); ++unit)
                QVERIFY(storage.byteAt({line, unit}) / 16 == std::size_t(line));
        }
    }
    // From 4 GB on offsets have more digits; of these bytes none is looked at.
    const HexStorage large({{"", std::size_t{1} << 33}, {}});
    QCOMPARE(large.lineCount(), (qsizetype{1} << 29) + 1);
    QCOMPARE(large.positionOf(std::size_t{1} << 33, Column::isHex), (TextPosition{1 << 29, 14}));
}

void TestHexView::marksStrayBytes()
{
    const QByteArray file = "junk%PDF-1.7\n%%EOF\njunk"; // header at 4, end at 19
    const SharedBytes bytes = shared(file);
    const HexStorage storage(bytes, findStrayBytes(bytes.view));
    const auto stray = TextMark::Kind::isStray;
    const TextMark offset{0, 8, TextMark::Kind::isAside};
    QCOMPARE(storage.line(0).marks, (QList<TextMark>{offset, {10, 11, stray}, {60, 4, stray}}));
    QCOMPARE(storage.line(1).marks, (QList<TextMark>{offset, {19, 11, stray}, {63, 4, stray}}));
    // Of a stretch, what lies in it, counted from its beginning.
    QCOMPARE(storage.line(0, 12, 50).marks, (QList<TextMark>{{0, 9, stray}, {48, 2, stray}}));
}

using KeysMoveByBytes = Rows<QKeyCombination, int, int, QString>;

void TestHexView::keysMoveByBytes_data()
{
    const KeysMoveByBytes row;
    row("right at a line's end", Qt::Key_Right, 15, 16, "15-16");
    row("right at the end", Qt::Key_Right, 40, 40, "40-40");
    row("left at a line's beginning", Qt::Key_Left, 16, 15, "15-16");
    row("left at the beginning", Qt::Key_Left, 0, 0, "0-0");
    row("group to the right", Qt::CTRL | Qt::Key_Right, 5, 8, "5-8");
    row("group to the left", Qt::CTRL | Qt::Key_Left, 8, 0, "0-8");
    row("line's beginning", Qt::Key_Home, 21, 16, "16-21");
    row("line's end, its last byte included", Qt::Key_End, 21, 31, "21-32");
    row("down", Qt::Key_Down, 5, 21, "5-21");
    row("down into a short line", Qt::Key_Down, 29, 40, "29-40");
    row("up", Qt::Key_Up, 21, 5, "5-21");
    row("page down, as far as there is", Qt::Key_PageDown, 3, 40, "3-40");
    row("all's beginning", Qt::CTRL | Qt::Key_Home, 21, 0, "0-21");
    row("all's end", Qt::CTRL | Qt::Key_End, 21, 40, "21-40");
}

void TestHexView::keysMoveByBytes()
{
    const auto [key, from, moved, selected] = KeysMoveByBytes::fetch();
    HexView view;
    view.resize(900, 400);
    view.setBytes(shared(QByteArray(40, 'x')));
    const auto start = std::size_t(from);
    view.selectBytes({start, start});
    QTest::keyClick(&view, key.key(), key.keyboardModifiers());
    QVERIFY(!view.hasSelection());
    QCOMPARE(int(view.caretByte()), moved);
    view.selectBytes({start, start});
    QTest::keyClick(&view, key.key(), key.keyboardModifiers() | Qt::ShiftModifier);
    QCOMPARE(shownSpan(view.selectedBytes()), selected);
}

void TestHexView::mouseSelectsBytes()
{
    HexView view;
    view.resize(900, 400);
    view.setBytes(shared("%PDF-1.7 /Name next(line) of words"));
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    const auto point = [&view](std::size_t byte, Column column) {
        const HexStorage& storage = view.hexStorage();
        const QPointF left = view.caretRect(storage.positionOf(byte, column))->center();
        return left.toPoint() + QPoint(3, 0); // on the byte
    };
    const auto drag = [&](std::size_t from, Column fromColumn, std::size_t to, Column toColumn) {
        QTest::mousePress(view.viewport(), Qt::LeftButton, {}, point(from, fromColumn));
        QTest::mouseMove(view.viewport(), point(to, toColumn));
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, point(to, toColumn));
        return shownSpan(view.selectedBytes());
    };
    for (const Column column : {Column::isHex, Column::isText}) {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, point(5, column));
        QCOMPARE(shownSpan(view.selectedBytes()), u"5-5"_s);
        QVERIFY(!view.hasSelection());
        QCOMPARE(drag(5, column, 20, column), u"5-21"_s); // both ends included
        QCOMPARE(drag(20, column, 5, column), u"5-21"_s);
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, point(3, column));
        QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::ShiftModifier, point(9, column));
        QCOMPARE(shownSpan(view.selectedBytes()), u"3-10"_s);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, point(12, column));
        QCOMPARE(shownSpan(view.selectedBytes()), u"10-14"_s); // "Name"
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, point(12, column));
        QCOMPARE(shownSpan(view.selectedBytes()), u"0-16"_s); // the third click: the line
    }
    QCOMPARE(drag(5, Column::isHex, 3, Column::isText), u"3-6"_s); // from column to column
}

using CopiesBytes = Rows<QByteArray, QString, QString>;

void TestHexView::copiesBytes_data()
{
    const CopiesBytes row;
    row("nothing", QByteArray(), QString(), QString());
    row("text, its line ends kept", QByteArray("a\r\n\tb"), u"61 0D 0A 09 62"_s, u"a\r\n\tb"_s);
    row("UTF-8", QByteArray("\xC3\xA4\xE2\x82\xAC"), u"C3 A4 E2 82 AC"_s, u"ä€"_s);
    row("no UTF-8", QByteArray("a\xE4"), u"61 E4"_s, QString());
    row("UTF-8 that is cut", QByteArray("\xE2\x82"), u"E2 82"_s, QString());
    row("control characters", QByteArray("a\0b", 3), u"61 00 62"_s, QString());
    const QByteArray large(4 << 20, 'x');
    const QString digits = u"78 "_s.repeated(large.size());
    row("4 MB", large, digits.chopped(1), QString::fromLatin1(large));
    row("more: as digits only", large + 'x', digits + u"78"_s, QString());
}

void TestHexView::copiesBytes()
{
    const auto [bytes, hex, text] = CopiesBytes::fetch();
    QGuiApplication::clipboard()->setText(u"before"_s);
    HexView view;
    view.setBytes(shared(bytes));
    view.selectAll();
    QCOMPARE(view.validateCommand(u"copy"_s), !hex.isNull());
    QCOMPARE(view.validateCommand(u"copyAsText"_s), !text.isNull());
    view.copy();
    QTRY_COMPARE_WITH_TIMEOUT(
        QGuiApplication::clipboard()->text(), hex.isNull() ? u"before"_s : hex, 30'000);
    if (text.isNull())
        return;
    view.copyAsText();
    QCOMPARE(QGuiApplication::clipboard()->text(), text);
}

QTEST_MAIN(TestHexView)
#include "tst_HexView.moc"
