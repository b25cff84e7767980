#include "PlaceQuery.h"

#include <QTest>

using namespace tarnwick;

namespace {

class TestPlaceQuery : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
};

using Expected = std::variant<PlaceQuery, PlaceMistake>;

void row(const char* text, const Expected& expected)
{
    QTest::addRow("%s", text) << QByteArray(text) << expected;
}

void TestPlaceQuery::reads_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<Expected>("expected");
    row("17", PlaceQuery(ObjectQuery{17, {}, {}}));
    row("17 0", PlaceQuery(ObjectQuery{17, 0, {}}));
    row(" 17\t2 R ", PlaceQuery(ObjectQuery{17, 2, {}}));
    row("17 v2", PlaceQuery(ObjectQuery{17, {}, 2}));
    row("17V 2", PlaceQuery(ObjectQuery{17, {}, 2}));
    row("17 1 r v3", PlaceQuery(ObjectQuery{17, 1, 3}));
    row("@2317", PlaceQuery(OffsetQuery{2317}));
    row("@ 0x90d", PlaceQuery(OffsetQuery{2317}));
    row("@0X90D", PlaceQuery(OffsetQuery{2317}));
    row("p12", PlaceQuery(PageQuery{12}));
    row("P 12", PlaceQuery(PageQuery{12}));
    row("", PlaceMistake::isEmpty);
    row(" \n", PlaceMistake::isEmpty);
    for (const char* text : {"x", "17 x", "17 0 0", "17 R", "17 v", "17 v2 3", "-17", "17 -1", "@",
             "@-1", "@0x", "@90D", "@0x90G", "p", "p1 2", "p-1", "v2", "0x17", "17,0"})
        row(text, PlaceMistake::isNoPlace);
    for (const char* text : {"99999999999999999999", "17 99999999999999999999", "p99999999999",
             "17 v99999999999999999999", "@0x1ffffffffffffffff"})
        row(text, PlaceMistake::isTooLarge);
}

void TestPlaceQuery::reads()
{
    QFETCH(QByteArray, text);
    QFETCH(Expected, expected);
    QVERIFY(parsePlaceQuery({text.data(), static_cast<std::size_t>(text.size())}) == expected);
}

} // namespace

QTEST_APPLESS_MAIN(TestPlaceQuery)

#include "tst_PlaceQuery.moc"
