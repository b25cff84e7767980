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

void TestHexView::keysMoveByBytes()
{
    HexView view;
    view.resize(900, 400);
    view.setBytes(shared(QByteArray(40, 'x')));
    // Where a key leads from a byte, and what is selected with the shift key.
    const auto press = [&view](QKeyCombination key, std::size_t from) -> QString {
        view.selectBytes({from, from});
        QTest::keyClick(&view, key.key(), key.keyboardModifiers());
        const QString moved
            = view.hasSelection() ? u"selects"_s : QString::number(view.caretByte());
        view.selectBytes({from, from});
        QTest::keyClick(&view, key.key(), key.keyboardModifiers() | Qt::ShiftModifier);
        return moved + u' ' + shownSpan(view.selectedBytes());
    };
    QCOMPARE(press(Qt::Key_Right, 15), u"16 15-16"_s); // at a line's end
    QCOMPARE(press(Qt::Key_Right, 40), u"40 40-40"_s);
    QCOMPARE(press(Qt::Key_Left, 16), u"15 15-16"_s);
    QCOMPARE(press(Qt::Key_Left, 0), u"0 0-0"_s);
    QCOMPARE(press(Qt::CTRL | Qt::Key_Right, 5), u"8 5-8"_s); // a group
    QCOMPARE(press(Qt::CTRL | Qt::Key_Left, 8), u"0 0-8"_s);
    QCOMPARE(press(Qt::Key_Home, 21), u"16 16-21"_s);
    QCOMPARE(press(Qt::Key_End, 21), u"31 21-32"_s); // the last byte included
    QCOMPARE(press(Qt::Key_Down, 5), u"21 5-21"_s);
    QCOMPARE(press(Qt::Key_Down, 29), u"40 29-40"_s); // into a short line
    QCOMPARE(press(Qt::Key_Up, 21), u"5 5-21"_s);
    QCOMPARE(press(Qt::Key_PageDown, 3), u"40 3-40"_s); // as far as there is
    QCOMPARE(press(Qt::CTRL | Qt::Key_Home, 21), u"0 0-21"_s);
    QCOMPARE(press(Qt::CTRL | Qt::Key_End, 21), u"40 21-40"_s);
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
