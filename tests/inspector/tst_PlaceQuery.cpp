#include "PlaceQuery.h"

#include "files/OffsetInput.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

class TestPlaceQuery : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void readsOffsets();
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
    row("17\u00A00", PlaceQuery(ObjectQuery{17, 0, {}}));
    row("p12", PlaceQuery(PageQuery{12}));
    row("P 12", PlaceQuery(PageQuery{12}));
    row("", PlaceMistake::isEmpty);
    row(" \n", PlaceMistake::isEmpty);
    for (const char* text : {"x", "17 x", "17 0 0", "17 R", "17 v", "17 v2 3", "-17", "17 -1", "p",
             "p1 2", "p-1", "v2", "0x17", "17,0"})
        row(text, PlaceMistake::isNoPlace);
    for (const char* text : {"99999999999999999999", "17 99999999999999999999", "p99999999999",
             "17 v99999999999999999999"})
        row(text, PlaceMistake::isTooLarge);
}

void TestPlaceQuery::reads()
{
    QFETCH(QByteArray, text);
    QFETCH(Expected, expected);
    QVERIFY(parsePlaceQuery(QString::fromUtf8(text).toStdU16String()) == expected);
}

/// The bytes window takes an offset with or without the sign, whoever asks for a place with it.
void TestPlaceQuery::readsOffsets()
{
    using Wrong = OffsetInput::Problem;
    const std::pair<Wrong, QStringList> inputs[] = {
        {Wrong::isNone,
            {u"2317"_s, u"@2317"_s, u" @ 2317 "_s, u"0x90D"_s, u"@ 0X 90d"_s, u"2,317"_s,
                u"2.317"_s, u"2\u202F317"_s, u"002317"_s}},
        {Wrong::isBehindEnd, {u"0xFFFFFFFFFFFFFFFFF"_s, u"99999999999999999999"_s}},
        {Wrong::isEmpty, {u""_s, u" "_s, u"@"_s}},
        {Wrong::isNoNumber,
            {u"-5"_s, u"+5"_s, u"1.5"_s, u"12,34"_s, u",123"_s, u"1,,234"_s, u"0x"_s, u"0xG"_s,
                u"12 0 R"_s, u"@@5"_s, u"five"_s}},
        {Wrong::isHexWithoutSign, {u"90D"_s}},
    };
    for (const auto& [problem, texts] : inputs) {
        const bool isRight = problem == Wrong::isNone;
        const Expected place = isRight      ? Expected(PlaceQuery(OffsetQuery{2317}))
            : problem == Wrong::isBehindEnd ? PlaceMistake::isTooLarge
                                            : PlaceMistake::isNoPlace;
        for (const QString& text : texts) {
            const OffsetInput input = readOffset(text.toStdU16String(), 10000);
            QVERIFY2(input.problem == problem, qPrintable(text));
            QVERIFY2(input.offset.value_or(0) == (isRight ? 2317 : 0), qPrintable(text));
            const QString signedText = text.contains(u'@') ? text : u'@' + text;
            QVERIFY2(parsePlaceQuery(signedText.toStdU16String()) == place, qPrintable(text));
        }
    }
    QCOMPARE(readOffset(u"0", 10000).offset.value_or(1), std::size_t{0});
    QCOMPARE(readOffset(u"10000", 10000).offset.value_or(0), std::size_t{10000}); // the end
    QCOMPARE(readOffset(u"10001", 10000).problem, Wrong::isBehindEnd);
}

} // namespace

QTEST_APPLESS_MAIN(TestPlaceQuery)

#include "tst_PlaceQuery.moc"
