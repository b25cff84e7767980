#include "viewer/PageMarks.h"
#include "viewer/SearchChoices.h"

#include <QTest>

namespace {

std::vector<std::u16string> numbers(int first, int last)
{
    std::vector<std::u16string> texts;
    for (int i = first; i != last; i += first < last ? 1 : -1)
        texts.push_back(QString::number(i).toStdU16String());
    return texts;
}

} // namespace

/// Options, ring, recent texts and marks: what the controls of the main window decide.
class TestSearchChoices : public QObject
{
    Q_OBJECT

private slots:
    void boxesChooseTheComparison();
    void stepsRunInARing_data();
    void stepsRunInARing();
    void recentTextsAreTheLatestTen();
    void storedRecentTextsKeepTheRules();
    void longRecentTextsAreCutBetweenCodePoints();
    void marksGoInFrontOnce();
    void theOldestMarkMakesRoom();
    void marksHaveTwoEnds_data();
    void marksHaveTwoEnds();
};

void TestSearchChoices::boxesChooseTheComparison()
{
    QCOMPARE(static_cast<int>(searchOptions(false, false)), 1);
    QCOMPARE(static_cast<int>(searchOptions(true, false)), 0);
    QCOMPARE(static_cast<int>(searchOptions(false, true)), 2);
    QCOMPARE(static_cast<int>(searchOptions(true, true)), 2);
}

void TestSearchChoices::stepsRunInARing_data()
{
    QTest::addColumn<qint64>("value");
    QTest::addColumn<qint64>("count");
    QTest::addColumn<qint64>("index"); // -1 for none
    QTest::newRow("within stays") << qint64(1) << qint64(3) << qint64(1);
    QTest::newRow("behind the last is the first") << qint64(3) << qint64(3) << qint64(0);
    QTest::newRow("far behind, too") << qint64(6) << qint64(3) << qint64(0);
    QTest::newRow("before the first is the last") << qint64(-1) << qint64(3) << qint64(2);
    QTest::newRow("far before, too") << qint64(-100) << qint64(3) << qint64(2);
    QTest::newRow("ring of one") << qint64(1) << qint64(1) << qint64(0);
    QTest::newRow("no matches") << qint64(5) << qint64(0) << qint64(-1);
}

void TestSearchChoices::stepsRunInARing()
{
    QFETCH(qint64, value);
    QFETCH(qint64, count);
    QTEST(qint64(ringIndex(value, count).value_or(-1)), "index");
}

void TestSearchChoices::recentTextsAreTheLatestTen()
{
    RecentSearches recents;
    QVERIFY(!recents.add(u""));
    for (const std::u16string& text : numbers(1, 13))
        QVERIFY(recents.add(text));
    QCOMPARE(recents.texts(), numbers(12, 2));
    QVERIFY(recents.add(u"5"));
    QCOMPARE(recents.texts().front(), std::u16string(u"5"));
    QCOMPARE(recents.texts().size(), RecentSearches::limit);
    QVERIFY(!recents.add(u"5"));
    recents.clear();
    QVERIFY(recents.texts().empty());
}

void TestSearchChoices::storedRecentTextsKeepTheRules()
{
    RecentSearches recents;
    recents.add(u"gone");
    recents.restore({u"b", u"", u"a", u"b"});
    QCOMPARE(recents.texts(), (std::vector<std::u16string>{u"b", u"a"}));
    recents.restore(numbers(0, 100));
    QCOMPARE(recents.texts(), numbers(0, 10));
}

void TestSearchChoices::longRecentTextsAreCutBetweenCodePoints()
{
    RecentSearches recents;
    recents.add(std::u16string(RecentSearches::longestText - 1, u'x') + u"\U0001F600 and more");
    QCOMPARE(recents.texts().front(), std::u16string(RecentSearches::longestText - 1, u'x'));
}

void TestSearchChoices::marksGoInFrontOnce()
{
    PageMarks marks;
    for (const int page : {1, 5, 9})
        QVERIFY(marks.mark(page));
    QVERIFY(!marks.mark(5));
    QVERIFY(!marks.mark(-1));
    QCOMPARE(marks.pages(), (std::vector<int>{9, 5, 1}));
}

void TestSearchChoices::theOldestMarkMakesRoom()
{
    PageMarks marks;
    for (int page = 0; page < 41; ++page)
        QVERIFY(marks.mark(page));
    QCOMPARE(marks.pages().size(), PageMarks::limit);
    QCOMPARE(marks.pages().front(), 40);
    QCOMPARE(marks.pages().back(), 1);
    QVERIFY(marks.mark(0));
}

void TestSearchChoices::marksHaveTwoEnds_data()
{
    QTest::addColumn<int>("selected");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after"); // -1 for none
    QTest::newRow("first") << 0 << -1 << 1;
    QTest::newRow("middle") << 1 << 0 << 2;
    QTest::newRow("last") << 2 << 1 << -1;
    QTest::newRow("nothing selected: forward to the first") << -1 << -1 << 0;
}

void TestSearchChoices::marksHaveTwoEnds()
{
    PageMarks marks;
    for (const int page : {1, 5, 9})
        marks.mark(page);
    QFETCH(int, selected);
    QTEST(marks.before(selected).value_or(-1), "before");
    QTEST(marks.after(selected).value_or(-1), "after");
    QCOMPARE(marks.page(2), std::optional(1));
    QVERIFY(!marks.page(3) && !marks.page(-1));
    QVERIFY(!PageMarks().before(0) && !PageMarks().after(-1));
}

QTEST_APPLESS_MAIN(TestSearchChoices)
#include "tst_SearchChoices.moc"
