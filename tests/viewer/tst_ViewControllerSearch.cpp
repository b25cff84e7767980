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
    void searchesLeaveTheStepper_data();
    void searchesLeaveTheStepper();
    void takesTheSelection();
    void waitsForTheText();
    void longTextsAreSearchedAside();
    void oldMatchesAreNotSteppedThrough();
    void closingEndsTheSearch();
    void recentSearchesAreRemembered();
    void keysSearchAndLeave();

private:
    static void search(ViewerFixture& viewer, const char* text)
    {
        viewer->searchFieldCell()->setStringValue(QString::fromLatin1(text));
        viewer->doSearchAction();
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
    ViewerFixture viewer(threeWords());
    QVERIFY(viewer.appear());
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
    ViewerFixture viewer(threeWords());
    QVERIFY(viewer.appear());
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
void TestViewControllerSearch::searchesLeaveTheStepper_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("matches");
    QTest::addColumn<QString>("said");
    QTest::addColumn<int>("next"); // the stepper's number behind Find Next
    QTest::newRow("a text that is there") << QByteArray("word") << 3 << u"1 of 3"_s << 0;
    QTest::newRow("a text that is not") << QByteArray("nowhere") << 0 << u"No matches"_s << 5;
    QTest::newRow("no text") << QByteArray() << 2 << QString() << 0;
}

void TestViewControllerSearch::searchesLeaveTheStepper()
{
    QFETCH(QByteArray, text);
    QFETCH(int, next);
    ViewerFixture viewer(threeWords());
    QVERIFY(viewer.appear());
    search(viewer, "st");
    viewer->searchStepper()->setIntegerValue(5);
    search(viewer, text.constData());
    QTEST(int(viewer->theFindList().size()), "matches");
    QTEST(viewer->searchField()->matchText(), "said");
    QCOMPARE(viewer->searchStepper()->integerValue(), 5);
    QCOMPARE(pageShown(viewer), 0);
    viewer->doFindNext();
    QCOMPARE(viewer->searchStepper()->integerValue(), next);
}

void TestViewControllerSearch::takesTheSelection()
{
    ViewerFixture viewer(threeWords());
    QVERIFY(viewer.appear());
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
    viewer->searchField()->setText(u"fox"_s);
    viewer->doSearchAction();
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
    ViewerFixture viewer(longText());
    QVERIFY(viewer.appear());
    viewer->searchField()->setText(u"no such animal"_s);
    viewer->doSearchAction();
    QVERIFY(viewer->isSearching());
    // The later search counts, the earlier one is given up.
    viewer->searchField()->setText(u"LAZY dog"_s);
    viewer->doSearchAction();
    QTRY_VERIFY(!viewer->isSearching());
    QCOMPARE(viewer->theFindList().size(), 150 * 60);
    QCOMPARE(viewer->theFindList().last().ranges().first().page, 149);
    search(viewer, "nothing");
    QVERIFY(viewer->theFindList().isEmpty());
}

/// What is searched for already decides what can be stepped through.
void TestViewControllerSearch::oldMatchesAreNotSteppedThrough()
{
    ViewerFixture viewer(longText());
    QVERIFY(viewer.appear());
    search(viewer, "lazy");
    const PDFSelection shown = viewer.pages().currentSelection();
    viewer->searchField()->setText(u"no such animal"_s);
    viewer->doSearchAction();
    QVERIFY(viewer->isSearching());
    viewer->doFindNext();
    QVERIFY(viewer->theFindList().isEmpty());
    QCOMPARE(viewer.pages().currentSelection(), shown);
    QVERIFY(!viewer->validateCommand(u"doFindNext"_s));
}

void TestViewControllerSearch::closingEndsTheSearch()
{
    ViewerFixture viewer(longText());
    QVERIFY(viewer.appear());
    viewer->searchField()->setText(u"fox"_s);
    viewer->doSearchAction();
    QVERIFY(viewer->isSearching());
    viewer.destroyController();
    // What the search comes to is told before what the next one does.
    ViewerFixture other(longText());
    QVERIFY(other.appear());
    search(other, "fox");
    QCOMPARE(other->theFindList().size(), 150 * 60);
}

void TestViewControllerSearch::recentSearchesAreRemembered()
{
    {
        ViewerFixture viewer(threeWords());
        QVERIFY(viewer.appear());
        QCOMPARE(viewer->searchMenu()->title(), u"Recents"_s);
        QCOMPARE(titles(viewer->searchMenu()),
            (QStringList{
                u"Recent Searches"_s, u"Item"_s, u"-"_s, u"Clear Menu"_s, u"No Recent Search"_s}));
        QCOMPARE(titles(viewer->searchField()->recentsMenu()), QStringList{u"No Recent Search"_s});
        search(viewer, "a & b");
        search(viewer, "word");
    }
    ViewerFixture viewer(threeWords());
    QVERIFY(viewer.appear());
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
    ViewerFixture viewer(threeWords());
    QVERIFY(viewer.appear());
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
