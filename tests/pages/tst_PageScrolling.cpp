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

class TestPageScrolling : public QObject
{
    Q_OBJECT

private slots:
    void glidesTheWholeWay();
    void staysWithinThePages();
    void knowsThePresentPage();
    void followsTheBars();
    void zooms();
    void wantsTheNearestTilesFirst();
};

void TestPageScrolling::glidesTheWholeWay()
{
    SmoothScroll glide(nullptr);
    QPointF gone;
    connect(&glide, &SmoothScroll::moved, this, [&](const QPointF& step) { gone += step; });
    glide.add({0, 100});
    glide.add({30.25, 50}); // more is added on the way, and less than a pixel
    QTRY_VERIFY(!glide.isMoving());
    QVERIFY((gone - QPointF(30.25, 150)).manhattanLength() < 1e-9);
    // Stopped, it owes nothing.
    glide.add({0, 1000});
    glide.stop();
    gone = {};
    glide.add({0, 1});
    QCOMPARE(gone, QPointF(0, 1));
}

void TestPageScrolling::staysWithinThePages()
{
    const auto origin = [](const QList<QSizeF>& sizes, const QPointF& wanted, double ratio = 1) {
        PageReader reader(sizes);
        reader.ratio = ratio;
        reader.viewport.moveTo(wanted);
        return reader.viewport.origin();
    };
    QCOMPARE(origin({}, {7, 7}), QPointF(-200, 0));
    QCOMPARE(origin({small, small}, {-200, -50}), QPointF(-200, 0)); // above the first page
    QCOMPARE(origin({small, small}, {-200, 1e9}), QPointF(-200, 830 - 500)); // below the last
    QCOMPARE(origin({{300, 100}}, {-200, 50}), QPointF(-200, 0)); // less than the view
    QCOMPARE(origin({small}, {33, 0}), QPointF(-200, 0)); // what fits stands in the middle
    QCOMPARE(origin({wide}, {-1e9, 0}), QPointF(-510, 0)); // a wide page from its left edge
    QCOMPARE(origin({wide}, {1e9, 0}), QPointF(110, 0)); // up to its right edge
    QCOMPARE(origin({small, small, wide}, {100, 0}), QPointF(-200, 0)); // further down is no room
    QCOMPARE(origin({wide, wide}, {-33.4, 20.7}), QPointF(-33, 21)); // whole pixels
    QCOMPARE(origin({wide, wide}, {-33.4, 20.7}, 2), QPointF(-33.5, 20.5)); // a fine screen's
}

void TestPageScrolling::knowsThePresentPage()
{
    // Pages of 400 pixels, 10 apart, in a view of 500.
    PageReader reader({small, small, small});
    const auto present = [&reader](double top, int target) {
        reader.scroller.scrollTo({-200, top}, target);
        return reader.scroller.currentPage();
    };
    QCOMPARE(present(200, -1), 1); // the one that shows most
    QCOMPARE(present(330, 1), 1); // the target where it shows whole
    QCOMPARE(present(0, 1), 0); // not a target that shows less
    QCOMPARE(present(0, 2), 0); // nor one out of view
    QCOMPARE(present(0, 99), 0); // a page that is not there
}

void TestPageScrolling::followsTheBars()
{
    // A few pages, and more pixels than a bar has steps.
    for (const auto& [pages, scale] : {std::pair(3, 1.0), {100'000, 64.0}}) {
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
}

void TestPageScrolling::zooms()
{
    for (const auto& [asked, factor] :
        {std::pair(2.5, 2.5), {0.4, 0.4}, {1e9, 64.0}, {0.0, 0.05}}) {
        PageReader reader(QList<QSizeF>(50, small));
        reader.scroller.showPage(20);
        const QPointF pointer(210, 200);
        const PagePlace before = reader.viewport.placeAt(pointer);
        reader.zoom.setFactor(asked, pointer);
        QCOMPARE(reader.zoom.factor(), factor);
        const PagePlace after = reader.viewport.placeAt(pointer);
        QCOMPARE(after.page, before.page);
        QVERIFY(std::abs(after.point.y() - before.point.y()) * reader.zoom.factor() < 1);
    }
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
