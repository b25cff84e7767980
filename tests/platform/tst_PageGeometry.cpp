#include "platform/PageGeometry.h"
#include "platform/TileCache.h"
#include "platform/TileGrid.h"
#include "platform/ViewHistory.h"

#include <QTest>

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
    void findsPages_data();
    void findsPages();
    void countsTheNearestPageWithoutPages();
    void takesThePageThatShowsMost_data();
    void takesThePageThatShowsMost();
    void bringsPlacesThereAndBack_data();
    void bringsPlacesThereAndBack();
    void keepsPlacesWhenSizesChange();
    void fitsWidths_data();
    void fitsWidths();
    void stillTellsPixelsApartFarDown();
    void coversPagesWithTiles_data();
    void coversPagesWithTiles();
    void givesUpWhatIsFarthest();
    void standsInWithTheNearestScale();
    void goesBackAndForward();
};

void TestPageGeometry::laysPagesBelowEachOther()
{
    const PageGeometry pages = geometry({letter, {100, 200}}, 2);
    QCOMPARE(pages.pageRect(0), QRectF(-612, gap, 1224, 1584));
    QCOMPARE(pages.pageRect(1), QRectF(-100, 1584 + 2 * gap, 200, 400));
    QCOMPARE(pages.contentHeight(), 1984 + 3 * gap);
    QCOMPARE(geometry({letter}, 1, 1).pageRect(0), QRectF(-396, gap, 792, 612));
}

void TestPageGeometry::findsPages_data()
{
    QTest::addColumn<double>("top");
    QTest::addColumn<double>("bottom");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    // Three pages of 100 points: 10 to 110, 120 to 220, 230 to 330.
    QTest::newRow("above everything") << -50.0 << 5.0 << 0 << -1;
    QTest::newRow("one page") << 20.0 << 30.0 << 0 << 0;
    QTest::newRow("an edge that only touches shows nothing") << 110.0 << 120.0 << 1 << 0;
    QTest::newRow("both sides of a gap") << 109.0 << 121.0 << 0 << 1;
    QTest::newRow("all") << -10.0 << 1000.0 << 0 << 2;
    QTest::newRow("below everything") << 331.0 << 400.0 << 3 << 2;
    QTest::newRow("an empty view") << 50.0 << 50.0 << 0 << -1;
}

void TestPageGeometry::findsPages()
{
    QFETCH(double, top);
    QFETCH(double, bottom);
    const PageGeometry pages = geometry({{50, 100}, {50, 100}, {50, 100}});
    const PageGeometry::PageRange range = pages.pagesBetween(top, bottom);
    QTEST(range.first, "first");
    QTEST(range.last, "last");
}

void TestPageGeometry::countsTheNearestPageWithoutPages()
{
    const PageGeometry none = geometry({});
    QCOMPARE(none.pageAt(10), -1);
    QCOMPARE(none.dominantPage(0, 100), -1);
    QCOMPARE(none.pagesBetween(0, 100), (PageGeometry::PageRange{0, -1}));
    QCOMPARE(none.widthOf({0, -1}), 0.0);
}

void TestPageGeometry::takesThePageThatShowsMost_data()
{
    QTest::addColumn<double>("top");
    QTest::addColumn<int>("page");
    QTest::newRow("at the top") << 0.0 << 0;
    QTest::newRow("more of the second") << 90.0 << 1;
    QTest::newRow("equal parts: the upper") << 65.0 << 0;
    QTest::newRow("past the end") << 5000.0 << 2;
}

void TestPageGeometry::takesThePageThatShowsMost()
{
    QFETCH(double, top);
    const PageGeometry pages = geometry({{50, 100}, {50, 100}, {50, 100}});
    QTEST(pages.dominantPage(top, 100), "page");
}

void TestPageGeometry::bringsPlacesThereAndBack_data()
{
    QTest::addColumn<int>("rotation");
    QTest::addColumn<QPointF>("corner"); // where the page's upper left corner shows
    QTest::newRow("upright") << 0 << QPointF(-306, gap);
    QTest::newRow("a quarter turn") << 1 << QPointF(396, gap);
    QTest::newRow("upside down") << 2 << QPointF(306, gap + 792);
    QTest::newRow("three quarters") << 3 << QPointF(-396, gap + 612);
}

void TestPageGeometry::bringsPlacesThereAndBack()
{
    QFETCH(int, rotation);
    QFETCH(QPointF, corner);
    PageGeometry pages = geometry({letter, letter}, 1, rotation);
    QCOMPARE(pages.contentPoint({0, {0, 0}}), corner);
    pages.setScale(1.7);
    const PagePlace place{1, {100, 33}};
    const PagePlace back = pages.placeAt(pages.contentPoint(place));
    QCOMPARE(back.page, place.page);
    QCOMPARE(back.point, place.point);
}

void TestPageGeometry::keepsPlacesWhenSizesChange()
{
    PageGeometry pages = geometry(QList<QSizeF>(100, letter));
    const PagePlace place = pages.placeAt({5, 60'000});
    pages.setPageSizes(10, QList<QSizeF>(20, QSizeF(100, 100)));
    QCOMPARE(pages.placeAt(pages.contentPoint(place)).page, place.page);
    QCOMPARE(pages.contentPoint(place).y(), 60'000.0 - 20 * 692);
}

void TestPageGeometry::fitsWidths_data()
{
    QTest::addColumn<QList<QSizeF>>("sizes");
    QTest::addColumn<double>("fitting");
    QTest::newRow("no pages") << QList<QSizeF>() << 1.0;
    QTest::newRow("one size") << QList<QSizeF>{letter, letter} << 612.0;
    QTest::newRow("a landscape page among them decides")
        << QList<QSizeF>{letter, letter, {792, 612}} << 792.0;
    QTest::newRow("a poster does not") << QList<QSizeF>{letter, {14400, 100}, letter} << 612.0;
}

void TestPageGeometry::fitsWidths()
{
    QFETCH(QList<QSizeF>, sizes);
    QFETCH(double, fitting);
    QCOMPARE(geometry(sizes).scaleForWidth(1000), (1000 - 2 * gap) / fitting);
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

void TestPageGeometry::coversPagesWithTiles_data()
{
    QTest::addColumn<QSize>("page");
    QTest::addColumn<int>("tiles");
    QTest::newRow("a pixel") << QSize(1, 1) << 1;
    QTest::newRow("just one tile") << QSize(1024, 1024) << 1;
    QTest::newRow("a pixel more") << QSize(1025, 10) << 2;
    QTest::newRow("a long strip") << QSize(7, 10'007) << 10;
    QTest::newRow("uneven") << QSize(3001, 2047) << 6;
}

void TestPageGeometry::coversPagesWithTiles()
{
    QFETCH(QSize, page);
    const TileGrid grid(page);
    QRegion covered;
    for (int row = 0; row < grid.rows(); ++row) {
        for (int column = 0; column < grid.columns(); ++column) {
            const QRect area = grid.area(column, row);
            QVERIFY(
                area.width() <= TileGrid::largestSide && area.height() <= TileGrid::largestSide);
            QVERIFY(!covered.intersects(area));
            covered += area;
            QCOMPARE(grid.tilesIn(QRect(area.topLeft(), QSize(1, 1))), QRect(column, row, 1, 1));
            QCOMPARE(
                grid.tilesIn(QRect(area.bottomRight(), QSize(1, 1))), QRect(column, row, 1, 1));
        }
    }
    QCOMPARE(covered, QRegion(QRect(QPoint(0, 0), page)));
    QTEST(grid.rows() * grid.columns(), "tiles");
    QVERIFY(grid.tilesIn(QRect(-20, -20, 10, 10)).isNull());
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

QTEST_APPLESS_MAIN(TestPageGeometry)
#include "tst_PageGeometry.moc"
