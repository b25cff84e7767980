#include "PageGeometry.h"
#include "ThumbnailGrid.h"
#include "TileCache.h"
#include "TileGrid.h"
#include "ViewHistory.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace tarnwick;

namespace {

const QSizeF letter(612, 792);
constexpr double gap = PageGeometry::gap;

PageGeometry geometry(const QList<QSizeF>& sizes, double scale = 1, int rotation = 0)
{
    PageGeometry geometry;
    geometry.setScale(scale);
    geometry.setRotation(rotation);
    geometry.setPages(sizes);
    return geometry;
}

QImage image(int side)
{
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

constexpr qsizetype bytesOf(int side)
{
    return qsizetype{side} * side * 4;
}

} // namespace

class TestPageGeometry : public QObject
{
    Q_OBJECT

private slots:
    void laysPagesBelowEachOther();
    void findsPages();
    void bringsPlacesThereAndBack();
    void keepsPlacesWhenSizesChange();
    void fitsWidths();
    void staysTheSameByWhateverWaySizesCome();
    void stillTellsPixelsApartFarDown();
    void coversPagesWithTiles();
    void givesUpWhatIsFarthest();
    void standsInWithTheNearestScale();
    void goesBackAndForward();
    void stepsThroughThumbnails();
};

void TestPageGeometry::laysPagesBelowEachOther()
{
    const PageGeometry pages = geometry({letter, {100, 200}}, 2);
    QCOMPARE(pages.pageRect(0), QRectF(-612, gap, 1224, 1584));
    QCOMPARE(pages.pageRect(1), QRectF(-100, 1584 + 2 * gap, 200, 400));
    QCOMPARE(pages.contentHeight(), 1984 + 3 * gap);
    QCOMPARE(geometry({letter}, 1, 1).pageRect(0), QRectF(-396, gap, 792, 612));
}

void TestPageGeometry::findsPages()
{
    // Three pages of 100 points: 10 to 110, 120 to 220, 230 to 330.
    const PageGeometry pages = geometry({{50, 100}, {50, 100}, {50, 100}});
    using Range = PageGeometry::PageRange;
    QCOMPARE(pages.pagesBetween(-50, 5), (Range{0, -1}));
    QCOMPARE(pages.pagesBetween(110, 120), (Range{1, 0})); // edges that only touch show nothing
    QCOMPARE(pages.pagesBetween(109, 121), (Range{0, 1}));
    QCOMPARE(pages.pagesBetween(331, 400), (Range{3, 2}));
    QCOMPARE(pages.dominantPage(65, 100), 0); // equal parts: the upper
    QCOMPARE(pages.dominantPage(5000, 100), 2);
    QCOMPARE(geometry({}).pageAt(10), -1);
}

void TestPageGeometry::bringsPlacesThereAndBack()
{
    // Where the page's upper left corner shows after no, one, two and three quarter turns.
    const QPointF corners[] = {{-306, gap}, {396, gap}, {306, gap + 792}, {-396, gap + 612}};
    for (int rotation = 0; rotation < 4; ++rotation) {
        PageGeometry pages = geometry({letter, letter}, 1, rotation);
        QCOMPARE(pages.contentPoint({0, {0, 0}}), corners[rotation]);
        pages.setScale(1.7);
        const PagePlace place{1, {100, 33}};
        const PagePlace back = pages.placeAt(pages.contentPoint(place));
        QCOMPARE(back.page, place.page);
        QCOMPARE(back.point, place.point);
    }
}

void TestPageGeometry::keepsPlacesWhenSizesChange()
{
    PageGeometry pages = geometry(QList<QSizeF>(100, letter));
    const PagePlace place = pages.placeAt({5, 60'000});
    pages.setPageSizes(10, QList<QSizeF>(20, QSizeF(100, 100)));
    QCOMPARE(pages.placeAt(pages.contentPoint(place)).page, place.page);
    QCOMPARE(pages.contentPoint(place).y(), 60'000.0 - 20 * 692);
}

void TestPageGeometry::fitsWidths()
{
    const double width = 1000 - 2 * gap;
    QCOMPARE(geometry({}).scaleForWidth(1000), width);
    // A landscape page among them decides, a poster does not.
    QCOMPARE(geometry({letter, letter, {792, 612}}).scaleForWidth(1000), width / 792);
    QCOMPARE(geometry({letter, {14400, 100}, letter}).scaleForWidth(1000), width / 612);
}

/// Sizes of large documents come in pieces, and each piece is worked in without the others: the
/// same must come of it as of all at once.
void TestPageGeometry::staysTheSameByWhateverWaySizesCome()
{
    QRandomGenerator random(7);
    QList<QSizeF> sizes(5000, letter);
    PageGeometry pieces = geometry(sizes);
    for (int round = 0; round < 60; ++round) {
        const int first = random.bounded(5000);
        const int count = 1 + random.bounded(std::min(1500, 5000 - first));
        const QSizeF same(1 + random.bounded(900), 1 + random.bounded(900));
        QList<QSizeF> piece;
        for (int page = 0; page < count; ++page)
            piece.append(
                round % 2 ? same : QSizeF(1 + random.bounded(14400) / 3.0, 100 + page % 7));
        std::copy(piece.begin(), piece.end(), sizes.begin() + first);
        pieces.setPageSizes(first, piece);
        if (round % 20 == 19)
            pieces.setRotation(round);
        const PageGeometry whole = geometry(sizes, 1, pieces.rotation());
        QCOMPARE(pieces.scaleForWidth(1000), whole.scaleForWidth(1000));
        for (const int page : {0, 1023, 1024, first, 4999})
            QCOMPARE(pieces.pageRect(page), whole.pageRect(page));
        QCOMPARE(pieces.pageAt(pieces.pageRect(first).center().y()), first);
    }
    // What fits is what the widths say, one by one.
    std::vector<double> widths;
    for (const QSizeF& size : sizes)
        widths.push_back(pieces.rotation() % 2 ? size.height() : size.width());
    std::sort(widths.begin(), widths.end());
    const double limit = widths[widths.size() / 2] * 2;
    const double widest = *std::prev(std::upper_bound(widths.begin(), widths.end(), limit));
    QCOMPARE(pieces.scaleForWidth(1000), (1000 - 2 * gap) / widest);
}

void TestPageGeometry::stillTellsPixelsApartFarDown()
{
    PageGeometry pages = geometry(QList<QSizeF>(100'000, QSizeF(14400, 14400)), 64);
    const QRectF last = pages.pageRect(99'999);
    QCOMPARE(pages.pageAt(last.top()), 99'999);
    QCOMPARE(pages.pageAt(last.top() - 1), 99'998);
    const PagePlace place = pages.placeAt(last.topLeft() + QPointF(3, 5));
    QVERIFY(qAbs(place.point.x() * 64 - 3) < 0.01 && qAbs(place.point.y() * 64 - 5) < 0.01);
}

void TestPageGeometry::coversPagesWithTiles()
{
    const QList<std::pair<QSize, int>> pages
        = {{{1, 1}, 1}, {{1024, 1024}, 1}, {{1025, 10}, 2}, {{7, 10'007}, 10}, {{3001, 2047}, 6}};
    for (const auto& [page, tiles] : pages) {
        const TileGrid grid(page);
        QCOMPARE(grid.rows() * grid.columns(), tiles);
        QRegion covered;
        for (int tile = 0; tile < tiles; ++tile) {
            const QPoint place(tile % grid.columns(), tile / grid.columns());
            const QRect area = grid.area(place.x(), place.y());
            QVERIFY(qMax(area.width(), area.height()) <= TileGrid::largestSide);
            QVERIFY(!covered.intersects(area));
            covered += area;
            for (const QPoint& corner : {area.topLeft(), area.bottomRight()})
                QCOMPARE(grid.tilesIn(QRect(corner, QSize(1, 1))), QRect(place, QSize(1, 1)));
        }
        QCOMPARE(covered, QRegion(QRect(QPoint(0, 0), page)));
        QVERIFY(grid.tilesIn(QRect(-20, -20, 10, 10)).isNull());
    }
}

void TestPageGeometry::givesUpWhatIsFarthest()
{
    TileCache cache(3 * bytesOf(10));
    cache.setFocus({4, 5}, 0, 1, 100);
    const TileKey shown{5, 0, 1, 0, 0};
    const TileKey near{6, 0, 1, 0, 0};
    const TileKey far{20, 0, 1, 0, 0};
    const TileKey stale{5, 0, 2, 0, 0};
    for (const TileKey& key : {far, shown, stale})
        cache.insert(key, image(10));
    cache.insert(near, image(10));
    QCOMPARE(cache.bytes(), 3 * bytesOf(10));
    QVERIFY(!cache.find(stale)); // another scale goes before a far page
    QVERIFY(cache.find(far));
    cache.insert({4, 0, 1, 0, 0}, image(10));
    QVERIFY(!cache.find(far));
    QVERIFY(cache.find(shown) && cache.find(near));
    cache.insert(shown, image(10)); // replaces
    QCOMPARE(cache.count(), 3);
    cache.setFocus({1000, 1001}, 0, 1, 100);
    QCOMPARE(cache.bytes(), 0);
    cache.insert(shown, image(30)); // larger than the whole cache, and needed
    QVERIFY(cache.find(shown));
}

void TestPageGeometry::standsInWithTheNearestScale()
{
    TileCache cache(bytesOf(1000));
    for (const double scale : {0.5, 1.5, 8.0})
        cache.insert({3, 0, scale, 0, 0}, image(10));
    cache.insert({3, 1, 2, 0, 0}, image(10));
    cache.insert({3, 0, 1.5, 1, 0}, image(10));
    const QList<TileKey> keys = cache.standIns(3, 0, 2);
    QCOMPARE(keys.size(), 2);
    QCOMPARE(keys.first().scale, 1.5);
    QVERIFY(cache.standIns(4, 0, 2).isEmpty());
}

void TestPageGeometry::goesBackAndForward()
{
    ViewHistory history;
    QVERIFY(!history.goBack({9, {}}) && !history.canGoForward());
    history.recordJumpFrom({1, {}});
    history.recordJumpFrom({2, {}});
    QCOMPARE(history.goBack({3, {}})->page, 2);
    QCOMPARE(history.goBack({2, {}})->page, 1);
    QCOMPARE(history.goForward({1, {}})->page, 2);
    history.recordJumpFrom({7, {}});
    QVERIFY(!history.canGoForward());
    for (int page = 0; page < 1000; ++page)
        history.recordJumpFrom({page, {}});
    int steps = 0;
    while (history.goBack({}))
        ++steps;
    QCOMPARE(steps, 200);
}

void TestPageGeometry::stepsThroughThumbnails()
{
    using Step = ThumbnailGrid::Step;
    // Ten pages in rows of three, of which two show: cells of 48 x 78 from 17 on.
    const ThumbnailGrid grid({40, 60}, 10, {218, 180}, 10);
    QCOMPARE(grid.pageAfter(2, Step::isDown), 5);
    QCOMPARE(grid.pageAfter(8, Step::isDown), 8); // no row below
    QCOMPARE(grid.pageAfter(7, Step::isDown), 7); // no page below
    QCOMPARE(grid.pageAfter(5, Step::isUp), 2);
    QCOMPARE(grid.pageAfter(2, Step::isUp), 2); // no row above
    QCOMPARE(grid.pageAfter(2, Step::isRight), 3); // over the end of a row
    QCOMPARE(grid.pageAfter(0, Step::isLeft), 0); // before the first
    QCOMPARE(grid.pageAfter(0, Step::isViewDown), 6);
    QCOMPARE(grid.pageAfter(5, Step::isViewDown), 9); // less than a view down
    QCOMPARE(grid.pageAfter(5, Step::isViewUp), 0); // less than a view up
    QCOMPARE(grid.pageAfter(5, Step::isFirst), 0);
    QCOMPARE(grid.pageAfter(5, Step::isLast), 9);
    QCOMPARE(ThumbnailGrid({40, 60}, 10, {0, 0}, 0).pageAfter(-1, Step::isDown), -1);
    QCOMPARE(grid.rect(4, 20), QRect(17 + 68, gap + 88 - 20, 48, 78));
    QVERIFY(grid.rect(10, 0).isNull());
    QCOMPARE(grid.height(), 4 * 88 + gap);
    for (int page = 0; page < 3 * 3; ++page)
        QCOMPARE(grid.pageAt(grid.rect(page, 20).center(), 20), page);
    QCOMPARE(grid.pageAt(grid.rect(9, 20).center(), 20), -1); // out of view
    QCOMPARE(grid.pageAt({10, 20}, 20), -1); // beside the cells
}

QTEST_APPLESS_MAIN(TestPageGeometry)
#include "tst_PageGeometry.moc"
