#include "ViewerFixture.h"

#include "SearchField.h"
#include "SearchStepper.h"

#include <QApplication>
#include <QCheckBox>
#include <QMenu>
#include <QSettings>
#include <QToolButton>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

QStringList titles(const QMenu* menu)
{
    QStringList list;
    for (const QAction* action : menu->actions())
        list << (action->isSeparator() ? u"-"_s : action->text());
    return list;
}

/// Three pages that hold "word" three times, the second in capitals.
PdfBuilder threeWords()
{
    PdfBuilder builder;
    return builder.addPage("first word").addPage("A WORD here").addPage("last\nword");
}

/// So much text that it is searched in a thread.
PdfBuilder longText()
{
    PdfBuilder builder;
    std::string page;
    for (int line = 0; line < 60; ++line)
        page += "the quick brown fox jumps over the lazy dog\n";
    for (int count = 0; count < 150; ++count)
        builder.addPage(page);
    return builder;
}

} // namespace

/// The search of the main window, through its controls.
class TestViewControllerSearch : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QCoreApplication::setOrganizationName(u"Tarnwick"_s); }
    void init() { QSettings().clear(); }
    void findsWhatTheBoxesChoose();
    void stepsThroughARing();
    void searchesLeaveTheStepper();
    void takesTheSelection();
    void waitsForTheText();
    void longTextsAreSearchedAside();
    void closingEndsTheSearch();
    void recentSearchesAreRemembered();
    void keysSearchAndLeave();

private:
    static void search(ViewerFixture& viewer, const char* text)
    {
        viewer.beginSearch(text);
        QTRY_VERIFY(!viewer->isSearching());
    }
    static int pageShown(ViewerFixture& viewer)
    {
        const PDFSelection& selection = viewer.pages().currentSelection();
        return selection.isEmpty() ? -1 : selection.ranges().first().page;
    }
};

void TestViewControllerSearch::findsWhatTheBoxesChoose()
{
    ShownViewer viewer(threeWords());
    const auto matches = [&viewer](bool isCaseSensitive, bool isLiteral, const char* text) {
        viewer->caseSensitiveButton()->setChecked(isCaseSensitive);
        viewer->literalButton()->setChecked(isLiteral);
        search(viewer, text);
        return viewer->theFindList().size();
    };
    QCOMPARE(matches(false, false, "WORD"), 3);
    QCOMPARE(matches(true, false, "WORD"), 1);
    QCOMPARE(viewer.pages().currentSelection(), viewer->theFindList().first());
    QCOMPARE(matches(false, true, "WORD"), 1);
    QCOMPARE(matches(true, true, "word"), 2);
    QCOMPARE(matches(false, false, "last word"), 1); // over a line end
    QCOMPARE(matches(false, false, "word A"), 0); // over a page's end
    QCOMPARE(matches(false, false, std::string(100'000, 'x').c_str()), 0);
}

void TestViewControllerSearch::stepsThroughARing()
{
    ShownViewer viewer(threeWords());
    search(viewer, "word");
    QCOMPARE(viewer->searchField()->matchText(), u"1 of 3"_s);
    const auto step = [&viewer](void (ViewController::*command)()) {
        ((*viewer).*command)();
        return qMakePair(viewer->searchStepper()->integerValue(), pageShown(viewer));
    };
    QCOMPARE(step(&ViewController::doFindPrev), qMakePair(2, 2));
    QCOMPARE(viewer->searchField()->matchText(), u"3 of 3"_s);
    QCOMPARE(step(&ViewController::doFindNext), qMakePair(0, 0));
    viewer->searchStepper()->nextButton()->click();
    QCOMPARE(pageShown(viewer), 1);
    viewer->searchStepper()->setIntegerValue(3);
    QCOMPARE(step(&ViewController::doSearchStepAction), qMakePair(0, 0));
    viewer->searchStepper()->previousButton()->click();
    QCOMPARE(pageShown(viewer), 2);
}

/// What a search leaves of the one before: the stepper's number always, with an empty text all.
void TestViewControllerSearch::searchesLeaveTheStepper()
{
    const auto left = [](const char* text) {
        ShownViewer viewer(threeWords());
        search(viewer, "st");
        viewer->searchStepper()->setIntegerValue(5);
        search(viewer, text);
        const QString said = viewer->searchField()->matchText();
        const int number = viewer->searchStepper()->integerValue();
        const int page = pageShown(viewer);
        viewer->doFindNext(); // the number behind which comes last
        return u"%1 found, %2, at %3 on %4, then at %5"_s.arg(viewer->theFindList().size())
            .arg(said)
            .arg(number)
            .arg(page)
            .arg(viewer->searchStepper()->integerValue());
    };
    QCOMPARE(left("word"), u"3 found, 1 of 3, at 5 on 0, then at 0"_s);
    QCOMPARE(left("nowhere"), u"0 found, No matches, at 5 on 0, then at 5"_s);
    QCOMPARE(left(""), u"2 found, , at 5 on 0, then at 0"_s);
}

void TestViewControllerSearch::takesTheSelection()
{
    ShownViewer viewer(threeWords());
    viewer->searchField()->setText(u"old"_s);
    viewer->doFindSelection();
    QCOMPARE(viewer->searchField()->text(), u"old"_s);
    const auto start = static_cast<int>(viewer.text().text().pages.at(2).indexOf("word"_L1));
    viewer.pages().setCurrentSelection(PDFSelection({2, start, 4}), false);
    viewer->doFindSelection();
    QTRY_COMPARE(viewer->theFindList().size(), 3);
    QCOMPARE(viewer->searchField()->text(), u"word"_s);
    QCOMPARE(pageShown(viewer), 0);
}

void TestViewControllerSearch::waitsForTheText()
{
    ViewerFixture viewer(longText());
    viewer->show();
    viewer.beginSearch("fox");
    QVERIFY(!viewer.text().isWhole() && viewer->isSearching());
    QVERIFY(viewer.child<QWidget>("searchProgress")->isVisible());
    viewer->cancelSearch();
    QVERIFY(!viewer->isSearching());
    viewer->doSearchAction();
    QTRY_COMPARE_WITH_TIMEOUT(viewer->theFindList().size(), 150 * 60, 30'000);
    QVERIFY(!viewer.child<QWidget>("searchProgress")->isVisible());
}

void TestViewControllerSearch::longTextsAreSearchedAside()
{
    ShownViewer viewer(longText());
    search(viewer, "fox");
    const PDFSelection shown = viewer.pages().currentSelection();
    viewer.beginSearch("no such animal");
    QVERIFY(viewer->isSearching());
    // What is searched for already decides what can be stepped through.
    viewer->doFindNext();
    QVERIFY(viewer->theFindList().isEmpty());
    QCOMPARE(viewer.pages().currentSelection(), shown);
    QVERIFY(!viewer->validateCommand(u"doFindNext"_s));
    // The later search counts, the earlier one is given up.
    viewer.beginSearch("LAZY dog");
    QTRY_VERIFY(!viewer->isSearching());
    QCOMPARE(viewer->theFindList().size(), 150 * 60);
    QCOMPARE(viewer->theFindList().last().ranges().first().page, 149);
}

void TestViewControllerSearch::closingEndsTheSearch()
{
    ShownViewer viewer(longText());
    viewer.beginSearch("fox");
    QVERIFY(viewer->isSearching());
    viewer.destroyController();
    // What the search comes to is told before what the next one does.
    ShownViewer other(longText());
    search(other, "fox");
    QCOMPARE(other->theFindList().size(), 150 * 60);
}

void TestViewControllerSearch::recentSearchesAreRemembered()
{
    {
        ShownViewer viewer(threeWords());
        QCOMPARE(viewer->searchMenu()->title(), u"Recents"_s);
        QCOMPARE(titles(viewer->searchMenu()),
            (QStringList{
                u"Recent Searches"_s, u"Item"_s, u"-"_s, u"Clear Menu"_s, u"No Recent Search"_s}));
        QCOMPARE(titles(viewer->searchField()->recentsMenu()), QStringList{u"No Recent Search"_s});
        search(viewer, "a & b");
        search(viewer, "word");
    }
    ShownViewer viewer(threeWords());
    QMenu* menu = viewer->searchField()->recentsMenu();
    QCOMPARE(titles(menu),
        (QStringList{u"Recent Searches"_s, u"word"_s, u"a && b"_s, u"-"_s, u"Clear Menu"_s}));
    menu->actions().at(1)->trigger();
    QTRY_COMPARE(viewer->theFindList().size(), 3);
    viewer->searchField()->recentsMenu()->actions().last()->trigger();
    QCOMPARE(titles(viewer->searchField()->recentsMenu()), QStringList{u"No Recent Search"_s});
}

void TestViewControllerSearch::keysSearchAndLeave()
{
    ShownViewer viewer(threeWords());
    viewer->activateWindow();
    viewer->performFind();
    QTRY_VERIFY(viewer->searchField()->hasFocus());
    QTest::keyClicks(viewer->searchField(), u"word"_s);
    QTest::keyClick(viewer->searchField(), Qt::Key_Return);
    QTRY_COMPARE(viewer->searchField()->matchText(), u"1 of 3"_s);
    QTest::keyClick(viewer->searchField(), Qt::Key_S);
    QCOMPARE(viewer->searchField()->matchText(), QString());
    QTest::keyClick(viewer->searchField(), Qt::Key_Escape);
    QTRY_VERIFY(viewer.pages().hasFocus());
}

QTEST_MAIN(TestViewControllerSearch)
#include "tst_ViewControllerSearch.moc"
