#include "SearchChoices.h"
#include "viewer/PageMarks.h"

#include <QTest>

using namespace tarnwick;

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
    void stepsRunInARing();
    void recentTextsAreTheLatestTen();
    void storedRecentTextsKeepTheRules();
    void theOldestMarkMakesRoom();
    void marksHaveTwoEnds();
};

void TestSearchChoices::stepsRunInARing()
{
    // Far behind or far before make no difference.
    for (const auto& [step, index] : {std::pair(1, 1), {3, 0}, {6, 0}, {-1, 2}, {-100, 2}})
        QCOMPARE(ringIndex(step, 3), std::optional(index));
    QVERIFY(!ringIndex(5, 0));
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
}

void TestSearchChoices::storedRecentTextsKeepTheRules()
{
    RecentSearches recents;
    recents.add(u"gone");
    recents.restore({u"b", u"", u"a", u"b"});
    QCOMPARE(recents.texts(), (std::vector<std::u16string>{u"b", u"a"}));
    recents.restore(numbers(0, 100));
    QCOMPARE(recents.texts(), numbers(0, 10));
    // Long texts are cut between code points.
    recents.add(std::u16string(RecentSearches::longestText - 1, u'x') + u"\U0001F600 and more");
    QCOMPARE(recents.texts().front(), std::u16string(RecentSearches::longestText - 1, u'x'));
}

void TestSearchChoices::theOldestMarkMakesRoom()
{
    PageMarks marks;
    for (int page = 0; page < 41; ++page)
        QVERIFY(marks.mark(page) && !marks.mark(page));
    QVERIFY(!marks.mark(-1));
    QCOMPARE(marks.pages().size(), PageMarks::limit);
    QCOMPARE(marks.pages().front(), 40);
    QCOMPARE(marks.pages().back(), 1);
    QVERIFY(marks.mark(0));
}

void TestSearchChoices::marksHaveTwoEnds()
{
    PageMarks marks;
    for (const int page : {1, 5, 9})
        marks.mark(page);
    QCOMPARE(marks.before(1), std::optional(0));
    QCOMPARE(marks.before(2), std::optional(1));
    QVERIFY(!marks.before(0) && !marks.before(-1));
    QCOMPARE(marks.after(-1), std::optional(0)); // nothing selected: forward to the first
    QCOMPARE(marks.after(0), std::optional(1));
    QCOMPARE(marks.after(1), std::optional(2));
    QVERIFY(!marks.after(2));
    QCOMPARE(marks.page(2), std::optional(1));
    QVERIFY(!marks.page(3) && !marks.page(-1));
    QVERIFY(!PageMarks().before(0) && !PageMarks().after(-1));
}

QTEST_APPLESS_MAIN(TestSearchChoices)
#include "tst_SearchChoices.moc"
