#include "text/TextViewLayout.h"

#include "ScrollAxis.h"
#include "text/ListedLines.h"
#include "text/PlainTextStorage.h"

#include <QFontDatabase>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

QByteArray shown(TextPosition position)
{
    return QByteArray::number(position.line) + ':' + QByteArray::number(position.unit);
}

std::shared_ptr<const TextStorage> textOf(const QString& text)
{
    return std::make_shared<PlainTextStorage>(text);
}

/// Lines of growing length, from none to some rows.
QString staircase()
{
    QStringList lines;
    for (int length = 0; length < 200; ++length)
        lines += u"step "_s.repeated(length / 5) + QString(length % 5, u'x');
    return lines.join(u'\n');
}

/// A layout of a text in a view of some 15 rows, with exact estimates.
class ShownText : public TextViewLayout
{
public:
    ShownText(std::shared_ptr<const TextStorage> storage, bool wraps)
    {
        setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
        setWrapping(wraps);
        setSize({300, 200});
        setStorage(std::move(storage));
        while (refineEstimate(QDeadlineTimer(QDeadlineTimer::Forever))) { }
    }
};

} // namespace

/// Where lines are cut, how high they are, which part of them shows and where on the view.
class TestTextViewLayout : public QObject
{
    Q_OBJECT

private slots:
    void rowsAreEstimated_data();
    void rowsAreEstimated();
    void estimatesOfHugeTextsMeetTheirEnds();
    void longLinesAreCut_data();
    void longLinesAreCut();
    void scrollingStaysWithinTheText_data();
    void scrollingStaysWithinTheText();
    void whatShowsStays_data();
    void whatShowsStays();
    void revealScrollsAsLittleAsItTakes();
    void pointsAndPlacesAgree_data();
    void pointsAndPlacesAgree();
    void barsReachBeyondTheirIntegers();
};

void TestTextViewLayout::rowsAreEstimated_data()
{
    QTest::addColumn<QList<int>>("lengths");
    QTest::addColumn<double>("unitsPerRow");
    QTest::addColumn<std::vector<qsizetype>>("gaps");
    QTest::addColumn<QList<double>>("rowsBefore");
    using Gaps = std::vector<qsizetype>;
    QTest::newRow("a row at least, then as many as are begun")
        << QList<int>{0, 9, 10, 11, 25} << 10. << Gaps{} << QList<double>{0, 1, 2, 3, 5, 8};
    QTest::newRow("a row each where nothing wraps")
        << QList<int>{0, 1000, 1} << 0. << Gaps{} << QList<double>{0, 1, 2, 3};
    QTest::newRow("gaps count above their lines")
        << QList<int>{5, 5, 5} << 10. << Gaps{0, 2} << QList<double>{0, 2, 3, 5};
}

void TestTextViewLayout::rowsAreEstimated()
{
    QFETCH(QList<int>, lengths);
    QFETCH(double, unitsPerRow);
    QFETCH(std::vector<qsizetype>, gaps);
    QFETCH(QList<double>, rowsBefore);
    QList<TextLine> lines;
    for (const int length : lengths)
        lines.append({QString(length, u'x'), {}});
    const ListedLines storage(lines);
    RowEstimate estimate;
    estimate.restart(storage, unitsPerRow, std::make_shared<const std::vector<qsizetype>>(gaps));
    QVERIFY(!estimate.advance(QDeadlineTimer(QDeadlineTimer::Forever)));
    for (qsizetype line = 0; line <= lines.size(); ++line) {
        QCOMPARE(estimate.rowsBefore(line), rowsBefore.at(line));
        if (line < lines.size())
            QCOMPARE(estimate.lineAt(rowsBefore.at(line)), line);
    }
    QCOMPARE(estimate.longestLine(), *std::max_element(lengths.begin(), lengths.end()));
    QCOMPARE(estimate.lineAt(-1), 0);
    QCOMPARE(estimate.lineAt(1e9), lines.size() - 1);
}

void TestTextViewLayout::estimatesOfHugeTextsMeetTheirEnds()
{
    const EndlessLines storage(1'000'003, 25);
    RowEstimate estimate;
    estimate.restart(storage, 10);
    QVERIFY(estimate.advance(QDeadlineTimer(0)));
    QCOMPARE(estimate.totalRows(), 1'000'003.); // what nobody has read counts as a row each
    QVERIFY(!estimate.advance(QDeadlineTimer(QDeadlineTimer::Forever)));
    QCOMPARE(estimate.totalRows(), 3 * 1'000'003.);
    for (const qsizetype line : {0, 1, 499'999, 1'000'002})
        QCOMPARE(estimate.lineAt(estimate.rowsBefore(line) + 0.01), line);
}

void TestTextViewLayout::longLinesAreCut_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<qsizetype>("cut");
    const auto row = [](const char* name, qsizetype at, const QString& what, qsizetype cut) {
        QTest::newRow(name) << QString(2000, u'x').replace(at, what.size(), what) << cut;
    };
    row("in the middle of a word", 0, {}, 512);
    row("behind the last space", 490, u"a b c"_s, 494);
    row("a space far before changes nothing", 400, u" "_s, 512);
    row("before a character of several", 510, u"\U0001F469\u200D\U0001F680"_s, 510);
    row("before a pair", 511, u"\U0001F600"_s, 511);
    row("before a letter with its mark", 511, u"e\u0301"_s, 511);
    row("between marks without an end", 1, QString(1500, u'\u0301'), 512);
}

void TestTextViewLayout::longLinesAreCut()
{
    QFETCH(QString, line);
    QFETCH(qsizetype, cut);
    TextSegments segments;
    segments.setStorage(textOf(line));
    segments.setStyle({QFont(), 0});
    QCOMPARE(segments.start(0, 1), cut);
    // The segments are the line, each place in one of them.
    qsizetype next = 0;
    for (qsizetype index = 0; index < segments.count(0); ++index) {
        const auto segment = segments.segment(0, index);
        QCOMPARE(segment->start, next);
        QCOMPARE(segments.indexOf({0, next}), index);
        next += segment->length;
        QCOMPARE(segments.indexOf({0, next - 1}), index);
        QCOMPARE(segment->endsLine, next == line.size());
    }
    QCOMPARE(next, line.size());
}

void TestTextViewLayout::scrollingStaysWithinTheText_data()
{
    QTest::addColumn<std::shared_ptr<const TextStorage>>("storage");
    QTest::addColumn<bool>("wraps");
    for (const bool wraps : {true, false}) {
        const auto row = [wraps](const char* name, std::shared_ptr<const TextStorage> storage) {
            QTest::addRow("%s, %s", name, wraps ? "wrapped" : "not wrapped") << storage << wraps;
        };
        row("nothing", textOf({}));
        row("less than the view", textOf(u"one\ntwo"_s));
        row("lines of all lengths", textOf(staircase()));
        row("a line of many segments", textOf(QString(100'000, u'x')));
        row("a billion lines", std::make_shared<EndlessLines>(1'000'000, 700));
    }
}

void TestTextViewLayout::scrollingStaysWithinTheText()
{
    QFETCH(std::shared_ptr<const TextStorage>, storage);
    QFETCH(bool, wraps);
    ShownText layout(storage, wraps);
    const qsizetype last = storage->lineCount() - 1;
    const TextPosition end{last, storage->lineLength(last)};
    const bool isShort = layout.height() <= layout.size().height();
    for (const double far : {1e12, -1e12, 1e12}) {
        layout.scrollToHeight(far);
        layout.scrollBy(far < 0 ? -1 : 1);
        const auto caret = layout.caretAt(far < 0 ? TextPosition{} : end);
        QVERIFY(caret);
        if (far < 0 || isShort)
            QCOMPARE(layout.heightAbove(), 0.);
        else
            QCOMPARE(layout.heightAbove(), layout.height() - layout.size().height());
        if (far < 0)
            QCOMPARE(caret->top(), 0.);
        else if (!isShort)
            QCOMPARE(caret->bottom(), layout.size().height());
    }
    TextPosition before;
    for (int part = 0; part <= 40; ++part) {
        layout.scrollToHeight(layout.height() * part / 40);
        QVERIFY(!(layout.topPosition() < before));
        before = layout.topPosition();
        if (wraps && part > 0 && part < 39) {
            layout.scrollBy(37);
            layout.scrollBy(-37);
            QCOMPARE(shown(layout.topPosition()), shown(before));
        }
    }
}

using Change = std::function<void(TextViewLayout&)>;

void TestTextViewLayout::whatShowsStays_data()
{
    QTest::addColumn<bool>("wraps");
    QTest::addColumn<Change>("change");
    const std::pair<const char*, Change> changes[] = {
        {"narrower",
            [](auto& layout) {
                layout.setSize({150, 200});
            }},
        {"higher",
            [](auto& layout) {
                layout.setSize({300, 400});
            }},
        {"the other wrapping", [](auto& layout) { layout.setWrapping(!layout.isWrapping()); }},
        {"larger letters", [](auto& layout) { layout.setFont(QFont(layout.font().family(), 20)); }},
        {"gaps above it",
            [](auto& layout) {
                layout.setGaps({0, 10, 150});
            }},
    };
    for (const bool wraps : {true, false}) {
        for (const auto& [name, change] : changes)
            QTest::addRow("%s, %s", name, wraps ? "wrapped" : "not wrapped") << wraps << change;
    }
}

void TestTextViewLayout::whatShowsStays()
{
    QFETCH(bool, wraps);
    QFETCH(Change, change);
    ShownText layout(textOf(staircase()), wraps);
    const TextPosition place{120, wraps ? 60 : 0};
    layout.showAtTop(place);
    const TextPosition top = layout.topPosition();
    QCOMPARE(top.line, place.line);
    change(layout);
    const auto caret = layout.caretAt(top);
    QVERIFY(caret);
    QCOMPARE(caret->top(), 0.);
}

void TestTextViewLayout::revealScrollsAsLittleAsItTakes()
{
    ShownText layout(textOf(QString(1000, u'\n')), false);
    const auto topOf = [&layout](qsizetype line) {
        layout.showAtTop({500, 0});
        layout.reveal({line, 0});
        return layout.caretAt({line, 0})->top();
    };
    const qreal row = layout.rowHeight();
    const qreal lowest = layout.size().height() - row;
    QCOMPARE(topOf(499), 0.);
    QCOMPARE(topOf(503), 3 * row);
    QCOMPARE(topOf(500 + qsizetype(layout.size().height() / row) + 3), lowest);
    for (const qsizetype far : {100, 900})
        QVERIFY(std::abs(topOf(far) - lowest / 2) <= row);
}

void TestTextViewLayout::pointsAndPlacesAgree_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("words")
        << u"one two three four five six seven eight nine ten eleven twelve\nx"_s;
    QTest::newRow("nothing") << QString();
    QTest::newRow("tabs") << u"\tone\t\ttwo"_s;
    QTest::newRow("a word wider than the view") << QString(300, u'w');
    QTest::newRow("right to left") << u"\u05D0\u05D1\u05D2 \u05D3\u05D4\u05D5 "_s.repeated(20);
    QTest::newRow("characters of several") << u"e\u0301\U0001F469\u200D\U0001F680x"_s.repeated(30);
}

/// Every place that shows is found again at its own point, and rows are stepped over and back.
void TestTextViewLayout::pointsAndPlacesAgree()
{
    QFETCH(QString, text);
    for (const bool wraps : {true, false}) {
        const ShownText layout(textOf(text), wraps);
        TextPosition place;
        for (bool isFirst = true;; isFirst = false) {
            const TextPosition next = isFirst ? place : layout.nextCharacter(place);
            if (!isFirst && next == place)
                break;
            if (!isFirst)
                QCOMPARE(shown(layout.previousCharacter(next)), shown(place));
            place = next;
            const auto caret = layout.caretAt(place);
            if (!caret || !QRectF(QPointF(), layout.size()).contains(caret->center()))
                continue;
            for (const qreal aside : {-0.4, 0.4}) {
                const QPointF point = caret->center() + QPointF(aside, 0);
                QCOMPARE(shown(layout.positionAt(point)), shown(place));
            }
            QVERIFY(!(place < layout.rowStart(place)) && !(layout.rowEnd(place) < place));
            const qreal distance = layout.distanceFromLineStart(place);
            const TextPosition below = layout.rowsBelow(place, 1, distance);
            if (layout.caretAt(below) && layout.caretAt(below)->top() > caret->top()
                && layout.distanceFromLineStart(below) == distance)
                QCOMPARE(layout.caretAt(layout.rowsBelow(below, -1, distance))->topLeft(),
                    caret->topLeft());
        }
    }
}

void TestTextViewLayout::barsReachBeyondTheirIntegers()
{
    for (const double extent : {1000., 1e13}) {
        QScrollBar bar;
        ScrollAxis axis(&bar);
        QSignalSpy moved(&axis, &ScrollAxis::moved);
        axis.show(extent, extent, 100, 10);
        QVERIFY(moved.isEmpty());
        QCOMPARE(bar.value(), bar.maximum());
        QCOMPARE(axis.position(), extent - 100);
        bar.setValue(bar.maximum() / 2);
        QCOMPARE(moved.size(), 1);
        QVERIFY(std::abs(axis.position() / (extent - 100) - 0.5) < 0.001);
        // A handle that is held stays under the pointer, whatever becomes known meanwhile.
        bar.setSliderDown(true);
        const int value = bar.value();
        axis.show(0, 2 * extent, 100, 10);
        QCOMPARE(bar.value(), value);
    }
}

QTEST_MAIN(TestTextViewLayout)
#include "tst_TextViewLayout.moc"
