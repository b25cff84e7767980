#include "PrintPagination.h"
#include "TextMarker.h"
#include "pdf/PageTextGeometry.h"

#include <QImage>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

/// Lines of characters 10 wide and 12 high, 20 apart, from (100, 100) on.
PDFPageText page(const QString& string)
{
    PDFPageText text;
    text.string = string;
    QPointF corner(100, 100);
    for (const QChar unit : string) {
        if (unit == u'\n') {
            text.quads.append(QPolygonF());
            corner = {100, corner.y() + 20};
            continue;
        }
        const QRectF box(corner, QSizeF(10, 12));
        text.quads.append(
            QPolygonF({box.topLeft(), box.topRight(), box.bottomRight(), box.bottomLeft()}));
        corner.rx() += 10;
    }
    return text;
}

/// The same from (200, 100) to the left.
PDFPageText pageFromRight(const QString& string)
{
    PDFPageText text = page(string);
    for (PDFQuad& quad : text.quads) {
        const double left = 290 - (quad.isEmpty() ? 0 : quad.at(0).x());
        if (!quad.isEmpty())
            quad.translate(left - quad.at(0).x(), 0);
    }
    return text;
}

QString part(const QString& string, const PDFSelection::Range& range)
{
    return string.mid(range.start, range.length);
}

} // namespace

class TestPageTextGeometry : public QObject
{
    Q_OBJECT

private slots:
    void findsPlaces();
    void findsPlacesFromTheRight();
    void keepsClustersTogether();
    void findsWordsAndLines();
    void selectsBetweenPlaces();
    void joinsOutlines();
    void findsTheSameByBlocks();
    void marksWithinReason();
    void splitsPagesOverSheets();
};

void TestPageTextGeometry::findsPlaces()
{
    const PDFPageText text = page(u"abc\ndefghijk"_s);
    // The nearest position between characters, and the character there or -1.
    const auto at = [&text](double x, double y) {
        const QPointF point(x, y);
        return qMakePair(PageTextGeometry::nearestPosition(text, point),
            PageTextGeometry::characterAt(text, point));
    };
    const auto places
        = [](qsizetype position, qsizetype character) { return qMakePair(position, character); };
    QCOMPARE(at(112, 105), places(1, 1)); // the first half of a character
    QCOMPARE(at(118, 105), places(2, 1));
    QCOMPARE(at(20, 105), places(0, -1));
    QCOMPARE(at(150, 106), places(3, -1)); // right of a short line, beside a longer one
    QCOMPARE(at(141, 126), places(8, 8));
    QCOMPARE(at(100, 700), places(4, -1));
}

void TestPageTextGeometry::findsPlacesFromTheRight()
{
    // The blank tells by what follows it, the full stop by what precedes it; numbers run
    // rightwards.
    const PDFPageText text = pageFromRight(u"\u05d0\u05d1 \u05d2."_s);
    const auto at = [](const PDFPageText& where, double x) {
        return PageTextGeometry::nearestPosition(where, QPointF(x, 105));
    };
    const QList<double> places = {198, 192, 188, 182, 178, 172, 168, 162, 158, 152};
    const QList<qsizetype> expected = {0, 1, 1, 2, 2, 3, 3, 4, 4, 5};
    for (qsizetype place = 0; place < places.size(); ++place)
        QCOMPARE(at(text, places.at(place)), expected.at(place));
    QCOMPARE(at(pageFromRight(u"1\u05d0"_s), 198), 1);
    QCOMPARE(PageTextGeometry::outlines(text, 1, 3),
        (QList<QPolygonF>{QPolygonF({{160, 100}, {190, 100}, {190, 112}, {160, 112}})}));
}

void TestPageTextGeometry::keepsClustersTogether()
{
    const PDFPageText text = page(u"ae\u0301b"_s);
    for (double x = 100; x < 145; x += 1)
        QVERIFY(PageTextGeometry::nearestPosition(text, {x, 105}) != 2);
    QCOMPARE(PageTextGeometry::nearestPosition({}, {1, 1}), 0);
}

void TestPageTextGeometry::findsWordsAndLines()
{
    const QString string = u"one two's, three\nfour"_s;
    const auto wordAt = [&string](qsizetype index) {
        return part(string, PageTextGeometry::wordAt(string, 0, index));
    };
    const auto lineAt = [&string](qsizetype index) {
        return part(string, PageTextGeometry::lineAt(string, 0, index));
    };
    QCOMPARE(wordAt(0), u"one");
    QCOMPARE(wordAt(2), u"one");
    QCOMPARE(wordAt(3), u" ");
    QCOMPARE(wordAt(7), u"two's");
    QCOMPARE(wordAt(15), u"three");
    QCOMPARE(wordAt(18), u"four");
    for (const qsizetype index : {0, 3, 15})
        QCOMPARE(lineAt(index), u"one two's, three");
    QCOMPARE(lineAt(18), u"four");
    for (const qsizetype index : {-1, 21})
        QVERIFY(wordAt(index).isEmpty() && lineAt(index).isEmpty());
}

void TestPageTextGeometry::selectsBetweenPlaces()
{
    const auto lengthOf = [](int number) -> qsizetype { return number == 2 ? 0 : 10; };
    using Ranges = QList<PDFSelection::Range>;
    const auto between = [&](PDFTextPosition one, PDFTextPosition other) {
        return PageTextGeometry::selectionBetween(one, other, lengthOf).ranges();
    };
    QCOMPARE(between({0, 3}, {0, 3}), Ranges());
    QCOMPARE(between({0, 3}, {0, 5}), (Ranges{{0, 3, 2}}));
    QCOMPARE(between({3, 4}, {0, 7}), (Ranges{{0, 7, 3}, {1, 0, 10}, {3, 0, 4}}));
    QCOMPARE(between({0, 10}, {1, 1'000'000}), (Ranges{{1, 0, 10}}));
}

void TestPageTextGeometry::joinsOutlines()
{
    const PDFPageText text = page(u"abc\ndef"_s);
    const QList<QPolygonF> outlines = PageTextGeometry::outlines(text, 1, 5);
    QCOMPARE(outlines.size(), 2);
    QCOMPARE(outlines.at(0).boundingRect(), QRectF(110, 100, 20, 12));
    QCOMPARE(outlines.at(1).boundingRect(), QRectF(100, 120, 20, 12));
    QVERIFY(PageTextGeometry::outlines(text, 7, 5).isEmpty());
    // A surrogate pair and a mark without width are no outlines of their own.
    PDFPageText emoji = page(u"a\U0001F600\u0301b"_s);
    emoji.quads[2] = emoji.quads.at(1);
    emoji.quads[3] = QPolygonF({{105, 100}, {105, 100}, {105, 112}, {105, 112}});
    emoji.quads[4].translate(-20, 0);
    QCOMPARE(PageTextGeometry::outlines(emoji, 0, 5).size(), 1);
    QCOMPARE(PageTextGeometry::outlines(text, -3, std::numeric_limits<qsizetype>::max()).size(), 2);
}

/// Blocks are a way to look at less, never at something else.
void TestPageTextGeometry::findsTheSameByBlocks()
{
    PDFPageText text = page(QString(u"0123456789\n"_s).repeated(100));
    const QList<QPointF> points = {{0, 0}, {105, 105}, {155, 900}, {500, 1320}, {104, 5000}};
    const auto found = [&text, &points] {
        QList<qsizetype> characters;
        for (const QPointF& point : points)
            characters << PageTextGeometry::characterAt(text, point)
                       << PageTextGeometry::nearestPosition(text, point);
        return characters;
    };
    const QList<qsizetype> withoutBlocks = found();
    QCOMPARE(PageTextGeometry::stretchesIn(text, QRectF(0, 0, 1, 1)).size(), 1);
    text.blocks = PageTextGeometry::blocksOf(text.quads);
    QCOMPARE(text.blocks.size(), (text.string.size() + 255) / 256);
    QCOMPARE(found(), withoutBlocks);
    const auto shown = PageTextGeometry::stretchesIn(text, QRectF(0, 700, 600, 10));
    QCOMPARE(shown.size(), 1);
    const qsizetype line = 11 * 30;
    QVERIFY(shown.first().start <= line && shown.first().end >= line + 10);
    QVERIFY(shown.first().end - shown.first().start <= 2 * PDFPageText::quadBlock);
}

/// A page may pile up millions of characters in one place.
void TestPageTextGeometry::marksWithinReason()
{
    PDFPageText text;
    text.string = QString(300'000, u'e');
    for (qsizetype index = 0; index < text.string.size(); ++index) {
        const int x = index % 2 != 0 ? 400 : 0; // apart, so that no two make one outline
        text.quads.append(QPolygonF(QRectF(x, 100, 60, 60)));
    }
    text.blocks = PageTextGeometry::blocksOf(text.quads);
    QList<PDFSelection> matches;
    for (qsizetype index = 0; index < text.string.size(); ++index)
        matches.append(PDFSelection({3, index, 1}));
    QImage image(600, 800, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    qsizetype outlines = 0;
    const auto toView = [&outlines](const QPolygonF& polygon) {
        ++outlines;
        return polygon;
    };
    TextMarker marker(painter, text, image.rect(), toView);
    marker.fillMatches(matches, 3, Qt::yellow);
    marker.fill({3, 0, text.string.size()}, Qt::cyan);
    QVERIFY2(outlines > 100 && outlines < 11'000, QByteArray::number(outlines));
    QCOMPARE(image.pixel(30, 130), QColor(Qt::yellow).rgb());
    TextMarker elsewhere(painter, text, QRectF(0, 500, 600, 100), toView);
    outlines = 0;
    elsewhere.fillMatches(matches, 3, Qt::red);
    elsewhere.fill({3, 0, text.string.size()}, Qt::red);
    QCOMPARE(outlines, 0);
}

void TestPageTextGeometry::splitsPagesOverSheets()
{
    // Letter paper leaves 468 by 648 inside its margins.
    const auto last = [](const QSizeF& page) {
        const auto sheets = PrintPagination::sheets(3, page, {468, 648});
        const PrintSheet& sheet = sheets.last();
        const bool isSound = sheet.page == 3 && page.width() * sheet.scale == sheet.area.width();
        return qMakePair(isSound ? int(sheets.size()) : 0, sheet.area);
    };
    const auto sheets = [](int count, const QRectF& area) { return qMakePair(count, area); };
    QCOMPARE(last({612, 792}), sheets(1, {0, 0, 468, 792 * 468.0 / 612})); // shrinks to the width
    QCOMPARE(last({234, 300}), sheets(1, {0, 0, 468, 600})); // grows
    QCOMPARE(last({468, 648.3}), sheets(1, {0, 0, 468, 648})); // a rounding's worth more than full
    QCOMPARE(last({468, 1000}), sheets(2, {0, 648, 468, 352}));
    QCOMPARE(last({1, 14400}), sheets(20, {0, 19 * 648, 0.9, 648})); // a thread is bounded
}

QTEST_APPLESS_MAIN(TestPageTextGeometry)
#include "tst_PageTextGeometry.moc"
