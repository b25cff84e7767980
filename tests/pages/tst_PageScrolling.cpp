#include "PageReader.h"
#include "SmoothScroll.h"
#include "TileGrid.h"
#include "WantedTiles.h"

#include <QSignalSpy>
#include <QTest>

using namespace tarnwick;

namespace {

const QSizeF small(300, 400);
const QSizeF wide(1000, 400);

} // namespace

Q_DECLARE_METATYPE(PageZoom::Fit)

class TestPageScrolling : public QObject
{
    Q_OBJECT

private slots:
    void glidesTheWholeWay_data();
    void glidesTheWholeWay();
    void staysWithinThePages_data();
    void staysWithinThePages();
    void knowsThePresentPage_data();
    void knowsThePresentPage();
    void followsTheBars_data();
    void followsTheBars();
    void zooms_data();
    void zooms();
    void wantsTheNearestTilesFirst();
};

void TestPageScrolling::glidesTheWholeWay_data()
{
    QTest::addColumn<QList<QPointF>>("ways");
    QTest::addColumn<QPointF>("sum");
    QTest::newRow("down") << QList<QPointF>{{0, 500}} << QPointF(0, 500);
    QTest::newRow("less than a pixel") << QList<QPointF>{{0.25, 0}} << QPointF(0.25, 0);
    QTest::newRow("more is added on the way")
        << QList<QPointF>{{0, 100}, {30, 50}} << QPointF(30, 150);
    QTest::newRow("there and back") << QList<QPointF>{{0, 100}, {0, -100}} << QPointF();
}

void TestPageScrolling::glidesTheWholeWay()
{
    QFETCH(QList<QPointF>, ways);
    QFETCH(QPointF, sum);
    SmoothScroll glide(nullptr);
    QPointF gone;
    connect(&glide, &SmoothScroll::moved, this, [&](const QPointF& step) { gone += step; });
    for (const QPointF& way : ways)
        glide.add(way);
    QTRY_VERIFY(!glide.isMoving());
    QVERIFY((gone - sum).manhattanLength() < 1e-9);
    // Stopped, it owes nothing.
    glide.add({0, 1000});
    glide.stop();
    gone = {};
    glide.add({0, 1});
    QCOMPARE(gone, QPointF(0, 1));
}

void TestPageScrolling::staysWithinThePages_data()
{
    QTest::addColumn<QList<QSizeF>>("sizes");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QPointF>("wanted");
    QTest::addColumn<QPointF>("origin");
    const auto row
        = [](const char* name, const QList<QSizeF>& sizes, double ratio, const QPointF& wanted,
              const QPointF& origin) { QTest::newRow(name) << sizes << ratio << wanted << origin; };
    row("no pages", {}, 1, {7, 7}, {-200, 0});
    row("above the first page", {small, small}, 1, {-200, -50}, {-200, 0});
    row("below the last page", {small, small}, 1, {-200, 1e9}, {-200, 830 - 500});
    row("less than the view", {{300, 100}}, 1, {-200, 50}, {-200, 0});
    row("what fits stands in the middle", {small}, 1, {33, 0}, {-200, 0});
    row("a wide page from its left edge", {wide}, 1, {-1e9, 0}, {-510, 0});
    row("a wide page up to its right edge", {wide}, 1, {1e9, 0}, {110, 0});
    row("a wide page further down is no room", {small, small, wide}, 1, {100, 0}, {-200, 0});
    row("whole pixels", {wide, wide}, 1, {-33.4, 20.7}, {-33, 21});
    row("halves of them on a fine screen", {wide, wide}, 2, {-33.4, 20.7}, {-33.5, 20.5});
}

void TestPageScrolling::staysWithinThePages()
{
    QFETCH(QList<QSizeF>, sizes);
    QFETCH(double, ratio);
    QFETCH(QPointF, wanted);
    PageReader reader(sizes);
    reader.ratio = ratio;
    reader.viewport.moveTo(wanted);
    QTEST(reader.viewport.origin(), "origin");
}

void TestPageScrolling::knowsThePresentPage_data()
{
    QTest::addColumn<double>("top");
    QTest::addColumn<int>("target");
    QTest::addColumn<int>("page");
    // Pages of 400 pixels, 10 apart, in a view of 500.
    QTest::newRow("the first") << 0.0 << -1 << 0;
    QTest::newRow("the one that shows most") << 200.0 << -1 << 1;
    QTest::newRow("the target where it shows whole") << 330.0 << 1 << 1;
    QTest::newRow("not a target that shows less") << 0.0 << 1 << 0;
    QTest::newRow("not a target out of view") << 0.0 << 2 << 0;
    QTest::newRow("a page that is not there") << 0.0 << 99 << 0;
}

void TestPageScrolling::knowsThePresentPage()
{
    QFETCH(double, top);
    QFETCH(int, target);
    PageReader reader({small, small, small});
    reader.scroller.scrollTo({-200, top}, target);
    QTEST(reader.scroller.currentPage(), "page");
}

void TestPageScrolling::followsTheBars_data()
{
    QTest::addColumn<int>("pages");
    QTest::addColumn<double>("scale");
    QTest::newRow("a few pages") << 3 << 1.0;
    QTest::newRow("more pixels than a bar has steps") << 100'000 << 64.0;
}

void TestPageScrolling::followsTheBars()
{
    QFETCH(int, pages);
    QFETCH(double, scale);
    PageReader reader(QList<QSizeF>(pages, small));
    reader.zoom.setFactor(scale, {});
    // What the bars show when the view has moved leads to where it is.
    for (const double part : {0.0, 0.3, 1.0}) {
        const double height = reader.viewport.pages().contentHeight() - 500;
        reader.scroller.scrollTo({0, part * height});
        const QPointF there = reader.viewport.origin();
        const double step = std::max(1.0, height / reader.vertical.maximum());
        reader.scroller.followBars();
        QVERIFY(std::abs(reader.viewport.origin().y() - there.y()) <= step);
        QCOMPARE(reader.viewport.origin().x(), there.x());
    }
    QCOMPARE(reader.scroller.currentPage(), pages - 1);
}

void TestPageScrolling::zooms_data()
{
    QTest::addColumn<double>("asked");
    QTest::addColumn<double>("factor");
    QTest::newRow("in") << 2.5 << 2.5;
    QTest::newRow("out") << 0.4 << 0.4;
    QTest::newRow("too far in") << 1e9 << 64.0;
    QTest::newRow("too far out") << 0.0 << 0.05;
}

void TestPageScrolling::zooms()
{
    QFETCH(double, asked);
    PageReader reader(QList<QSizeF>(50, small));
    reader.scroller.showPage(20);
    const QPointF pointer(210, 200);
    const PagePlace before = reader.viewport.placeAt(pointer);
    reader.zoom.setFactor(asked, pointer);
    QTEST(reader.zoom.factor(), "factor");
    const PagePlace after = reader.viewport.placeAt(pointer);
    QCOMPARE(after.page, before.page);
    QVERIFY(std::abs(after.point.y() - before.point.y()) * reader.zoom.factor() < 1);
}

void TestPageScrolling::wantsTheNearestTilesFirst()
{
    PageReader reader(QList<QSizeF>(9, QSizeF(300, 1500)));
    reader.scroller.scrollTo({-200, 1400});
    // The end of page 0 and the beginning of page 1 show, of which the first shows more.
    QList<std::pair<int, int>> tiles;
    for (const TileKey& key : wantedTiles(reader.viewport))
        tiles.append({key.page, key.row});
    QCOMPARE(tiles, (QList<std::pair<int, int>>{{1, 0}, {0, 1}}));
    reader.scroller.scrollTo({-200, 1250});
    QCOMPARE(wantedTiles(reader.viewport).first().page, 0);
    QVERIFY(wantedTiles(PageReader({}).viewport).isEmpty());
}

QTEST_MAIN(TestPageScrolling)
#include "tst_PageScrolling.moc"
