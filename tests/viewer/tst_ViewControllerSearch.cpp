#include "ViewerFixture.h"

#include "viewer/SearchField.h"
#include "viewer/SearchStepper.h"

#include <QApplication>
#include <QCheckBox>
#include <QMenu>
#include <QSettings>
#include <QToolButton>

namespace {

QStringList titles(const QMenu* menu)
{
    QStringList list;
    for (const QAction* action : menu->actions())
        list << (action->isSeparator() ? QStringLiteral("-") : action->text());
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
    void init() { QSettings().clear(); }
    void findsWhatTheBoxesChoose_data();
    void findsWhatTheBoxesChoose();
    void stepsThroughARing();
    void stepperKeepsItsNumber();
    void emptyTextChangesNothing();
    void missEmptiesTheList();
    void takesTheSelection();
    void waitsForTheText();
    void longTextsAreSearchedAside();
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

void TestViewControllerSearch::findsWhatTheBoxesChoose_data()
{
    QTest::addColumn<bool>("isCaseSensitive");
    QTest::addColumn<bool>("isLiteral");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("matches");
    QTest::newRow("neither ignores case") << false << false << QStringLiteral("WORD") << 3;
    QTest::newRow("case") << true << false << QStringLiteral("WORD") << 1;
    QTest::newRow("literal means case too") << false << true << QStringLiteral("WORD") << 1;
    QTest::newRow("both are literal") << true << true << QStringLiteral("word") << 2;
    QTest::newRow("over a line end") << false << false << QStringLiteral("last word") << 1;
    QTest::newRow("not over a page's end") << false << false << QStringLiteral("word A") << 0;
    QTest::newRow("enormous") << false << false << QString(100'000, QLatin1Char('x')) << 0;
}

void TestViewControllerSearch::findsWhatTheBoxesChoose()
{
    ViewerFixture viewer(threeWords());
    QVERIFY(viewer.appear());
    QFETCH(bool, isCaseSensitive);
    QFETCH(bool, isLiteral);
    QFETCH(QString, text);
    viewer->caseSensitiveButton()->setChecked(isCaseSensitive);
    viewer->literalButton()->setChecked(isLiteral);
    viewer->searchField()->setText(text);
    QTest::keyClick(viewer->searchField(), Qt::Key_Return);
    QTRY_VERIFY(!viewer->isSearching());
    QTEST(static_cast<int>(viewer->theFindList().size()), "matches");
    if (!viewer->theFindList().isEmpty())
        QCOMPARE(viewer.pages().currentSelection(), viewer->theFindList().first());
}

void TestViewControllerSearch::stepsThroughARing()
{
    ViewerFixture viewer(threeWords());
    QVERIFY(viewer.appear());
    search(viewer, "word");
    QCOMPARE(viewer->searchField()->matchText(), QStringLiteral("1 of 3"));
    const auto step = [&viewer](void (ViewController::*command)()) {
        ((*viewer).*command)();
        return qMakePair(viewer->searchStepper()->integerValue(), pageShown(viewer));
    };
    QCOMPARE(step(&ViewController::doFindPrev), qMakePair(2, 2));
    QCOMPARE(viewer->searchField()->matchText(), QStringLiteral("3 of 3"));
    QCOMPARE(step(&ViewController::doFindNext), qMakePair(0, 0));
    viewer->searchStepper()->nextButton()->click();
    QCOMPARE(pageShown(viewer), 1);
    viewer->searchStepper()->setIntegerValue(3);
    QCOMPARE(step(&ViewController::doSearchStepAction), qMakePair(0, 0));
    viewer->searchStepper()->previousButton()->click();
    QCOMPARE(pageShown(viewer), 2);
}

void TestViewControllerSearch::stepperKeepsItsNumber()
{
    ViewerFixture viewer(threeWords());
    QVERIFY(viewer.appear());
    viewer->searchStepper()->setIntegerValue(5);
    search(viewer, "word");
    QCOMPARE(viewer->searchStepper()->integerValue(), 5);
    QCOMPARE(pageShown(viewer), 0);
    viewer->doFindNext();
    QCOMPARE(viewer->searchStepper()->integerValue(), 0);
    QCOMPARE(pageShown(viewer), 0);
}

void TestViewControllerSearch::emptyTextChangesNothing()
{
    ViewerFixture viewer(threeWords());
    QVERIFY(viewer.appear());
    search(viewer, "word");
    viewer->doFindNext();
    search(viewer, "");
    QCOMPARE(viewer->theFindList().size(), 3);
    QCOMPARE(pageShown(viewer), 1);
}

void TestViewControllerSearch::missEmptiesTheList()
{
    ViewerFixture viewer(threeWords());
    QVERIFY(viewer.appear());
    search(viewer, "word");
    viewer->searchStepper()->setIntegerValue(1);
    search(viewer, "nowhere");
    QVERIFY(viewer->theFindList().isEmpty());
    QCOMPARE(viewer->searchField()->matchText(), QStringLiteral("No matches"));
    QCOMPARE(pageShown(viewer), 0);
    viewer->doFindNext();
    viewer->doFindPrev();
    QCOMPARE(viewer->searchStepper()->integerValue(), 1);
}

void TestViewControllerSearch::takesTheSelection()
{
    ViewerFixture viewer(threeWords());
    QVERIFY(viewer.appear());
    viewer->searchField()->setText(QStringLiteral("old"));
    viewer->doFindSelection();
    QCOMPARE(viewer->searchField()->text(), QStringLiteral("old"));
    const auto start = static_cast<int>(viewer.text().pageString(2).indexOf(QLatin1String("word")));
    viewer.pages().setCurrentSelection(PDFSelection({2, start, 4}), false);
    viewer->doFindSelection();
    QTRY_COMPARE(viewer->theFindList().size(), 3);
    QCOMPARE(viewer->searchField()->text(), QStringLiteral("word"));
    QCOMPARE(pageShown(viewer), 0);
}

void TestViewControllerSearch::waitsForTheText()
{
    ViewerFixture viewer(longText());
    viewer->show();
    viewer->searchField()->setText(QStringLiteral("fox"));
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
    viewer->searchField()->setText(QStringLiteral("no such animal"));
    viewer->doSearchAction();
    QVERIFY(viewer->isSearching());
    // The later search counts, the earlier one is given up.
    viewer->searchField()->setText(QStringLiteral("LAZY dog"));
    viewer->doSearchAction();
    QTRY_VERIFY(!viewer->isSearching());
    QCOMPARE(viewer->theFindList().size(), 150 * 60);
    QCOMPARE(viewer->theFindList().last().ranges().first().page, 149);
    search(viewer, "nothing");
    QVERIFY(viewer->theFindList().isEmpty());
}

void TestViewControllerSearch::closingEndsTheSearch()
{
    ViewerFixture viewer(longText());
    QVERIFY(viewer.appear());
    viewer->searchField()->setText(QStringLiteral("fox"));
    viewer->doSearchAction();
    QVERIFY(viewer->isSearching());
    viewer.destroyController();
    QTest::qWait(50);
}

void TestViewControllerSearch::recentSearchesAreRemembered()
{
    {
        ViewerFixture viewer(threeWords());
        QVERIFY(viewer.appear());
        QCOMPARE(viewer->searchMenu()->title(), QStringLiteral("Recents"));
        QCOMPARE(titles(viewer->searchMenu()),
            (QStringList{QStringLiteral("Recent Searches"), QStringLiteral("Item"),
                QStringLiteral("-"), QStringLiteral("Clear Menu"),
                QStringLiteral("No Recent Search")}));
        QCOMPARE(titles(viewer->searchField()->recentsMenu()),
            QStringList{QStringLiteral("No Recent Search")});
        search(viewer, "a & b");
        search(viewer, "word");
    }
    ViewerFixture viewer(threeWords());
    QVERIFY(viewer.appear());
    QMenu* menu = viewer->searchField()->recentsMenu();
    QCOMPARE(titles(menu),
        (QStringList{QStringLiteral("Recent Searches"), QStringLiteral("word"),
            QStringLiteral("a && b"), QStringLiteral("-"), QStringLiteral("Clear Menu")}));
    menu->actions().at(1)->trigger();
    QTRY_COMPARE(viewer->theFindList().size(), 3);
    viewer->searchField()->recentsMenu()->actions().last()->trigger();
    QCOMPARE(titles(viewer->searchField()->recentsMenu()),
        QStringList{QStringLiteral("No Recent Search")});
}

void TestViewControllerSearch::keysSearchAndLeave()
{
    ViewerFixture viewer(threeWords());
    QVERIFY(viewer.appear());
    viewer->activateWindow();
    viewer->performFind();
    QTRY_VERIFY(viewer->searchField()->hasFocus());
    QTest::keyClicks(viewer->searchField(), QStringLiteral("word"));
    QTest::keyClick(viewer->searchField(), Qt::Key_Return);
    QTRY_COMPARE(viewer->searchField()->matchText(), QStringLiteral("1 of 3"));
    QTest::keyClick(viewer->searchField(), Qt::Key_S);
    QCOMPARE(viewer->searchField()->matchText(), QString());
    QTest::keyClick(viewer->searchField(), Qt::Key_Escape);
    QTRY_VERIFY(viewer.pages().hasFocus());
}

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Tarnwick"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_ViewControllerSearch"));
    TestViewControllerSearch test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_ViewControllerSearch.moc"
