#include "text/TextViewLayout.h"

#include "ScrollAxis.h"
#include "support/Rows.h"
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
    void rowsAreEstimated();
    void estimatesOfHugeTextsMeetTheirEnds();
    void longLinesAreCut();
    void scrollingStaysWithinTheText_data();
    void scrollingStaysWithinTheText();
    void whatShowsStays();
    void revealScrollsAsLittleAsItTakes();
    void pointsAndPlacesAgree();
    void barsReachBeyondTheirIntegers();
};

void TestTextViewLayout::rowsAreEstimated()
{
    // The rows before each line and all of them; then whether each line is found at its own.
    const auto rows = [](const QList<int>& lengths, double unitsPerRow,
                          const std::vector<qsizetype>& gaps = {}) {
        QList<TextLine> lines;
        for (const int length : lengths)
            lines.append({QString(length, u'x'), {}});
        const ListedLines storage(lines);
        RowEstimate estimate;
        estimate.restart(
            storage, unitsPerRow, std::make_shared<const std::vector<qsizetype>>(gaps));
        estimate.advance(QDeadlineTimer(QDeadlineTimer::Forever));
        QList<double> before;
        for (qsizetype line = 0; line <= lines.size(); ++line) {
            before += estimate.rowsBefore(line);
            if (estimate.lineAt(before.last()) != std::min(line, lines.size() - 1))
                before += -1;
        }
        if (estimate.longestLine() != *std::max_element(lengths.begin(), lengths.end()))
            before += -2;
        return before;
    };
    // A row at least, then as many as are begun.
    QCOMPARE(rows({0, 9, 10, 11, 25}, 10), (QList<double>{0, 1, 2, 3, 5, 8}));
    QCOMPARE(rows({0, 1000, 1}, 0), (QList<double>{0, 1, 2, 3})); // nothing wraps
    QCOMPARE(rows({5, 5, 5}, 10, {0, 2}), (QList<double>{0, 2, 3, 5})); // gaps count above lines
}

void TestTextViewLayout::estimatesOfHugeTextsMeetTheirEnds()
{
    const EndlessLines storage(1'000'003, 25);
    RowEstimate estimate;
    estimate.restart(storage, 10);
    QVERIFY(estimate.advance(QDeadlineTimer(0)));
    QCOMPARE(estimate.totalRows(), 1'000'003.); // what nobody has read counts as a row each
    QVERIFY(!estimate.advance(QDeadlineTimer(QDeadlineTimer::Forever)));
    QCOMPARE(estimate.lineAt(-1), 0);
    QCOMPARE(estimate.lineAt(1e9), 1'000'002);
    QCOMPARE(estimate.totalRows(), 3 * 1'000'003.);
    for (const qsizetype line : {0, 1, 499'999, 1'000'002})
        QCOMPARE(estimate.lineAt(estimate.rowsBefore(line) + 0.01), line);
}

void TestTextViewLayout::longLinesAreCut()
{
    struct Cut
    {
        qsizetype place; ///< of a text among 2000 letters
        QString text;
        qsizetype cut;
    };
    const Cut cuts[] = {
        {0, {}, 512}, // in the middle of a word
        {490, u"a b c"_s, 494}, // behind the last space
        {400, u" "_s, 512}, // a space far before changes nothing
        {510, u"\U0001F469\u200D\U0001F680"_s, 510}, // before a character of several
        {511, u"\U0001F600"_s, 511}, // before a pair
        {511, u"e\u0301"_s, 511}, // before a letter with its mark
        {1, QString(1500, u'\u0301'), 512}, // between marks without an end
    };
    for (const auto& [place, text, cut] : cuts) {
        const QString line = QString(2000, u'x').replace(place, text.size(), text);
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
}

using ScrollingStaysWithinTheText = Rows<std::shared_ptr<const TextStorage>>;

void TestTextViewLayout::scrollingStaysWithinTheText_data()
{
    const ScrollingStaysWithinTheText row;
    row("nothing", textOf({}));
    row("less than the view", textOf(u"one\ntwo"_s));
    row("lines of all lengths", textOf(staircase()));
    row("a line of many segments", textOf(QString(100'000, u'x')));
    row("a billion lines", std::make_shared<EndlessLines>(1'000'000, 700));
}

void TestTextViewLayout::scrollingStaysWithinTheText()
{
    const auto [storage] = ScrollingStaysWithinTheText::fetch();
    for (const bool wraps : {true, false}) {
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
}

void TestTextViewLayout::whatShowsStays()
{
    const std::pair<const char*, std::function<void(TextViewLayout&)>> changes[] = {
        {"narrower", [](auto& layout) { layout.setSize(QSizeF(150, 200)); }},
        {"higher", [](auto& layout) { layout.setSize(QSizeF(300, 400)); }},
        {"the other wrapping", [](auto& layout) { layout.setWrapping(!layout.isWrapping()); }},
        {"larger letters", [](auto& layout) { layout.setFont(QFont(layout.font().family(), 20)); }},
        {"gaps above it",
            [](auto& layout) {
                layout.setGaps(std::vector<qsizetype>{0, 10, 150});
            }},
    };
    for (const bool wraps : {true, false}) {
        for (const auto& [name, change] : changes) {
            ShownText layout(textOf(staircase()), wraps);
            layout.showAtTop({120, wraps ? 60 : 0});
            const TextPosition top = layout.topPosition();
            QCOMPARE(top.line, 120);
            change(layout);
            QVERIFY2(layout.caretAt(top) && layout.caretAt(top)->top() == 0, name);
        }
    }
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

/// Every place that shows is found again at its own point, and rows are stepped over and back.
void TestTextViewLayout::pointsAndPlacesAgree()
{
    const QString texts[] = {{}, u"one two three four five six seven eight nine ten eleven\nx"_s,
        u"\tone\t\ttwo"_s, QString(300, u'w'),
        u"\u05D0\u05D1\u05D2 \u05D3\u05D4\u05D5 "_s.repeated(20), // right to left
        u"e\u0301\U0001F469\u200D\U0001F680x"_s.repeated(30)}; // characters of several
    for (int round = 0; round < 2 * int(std::size(texts)); ++round) {
        const ShownText layout(textOf(texts[round / 2]), round % 2 == 0);
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
