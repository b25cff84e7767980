#include "ViewerFixture.h"

#include "LossLine.h"
#include "ProgressLine.h"
#include "pages/PDFThumbnailView.h"
#include "text/ListedLines.h"
#include "text/PlainTextView.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QSplitter>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeView>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

QStringList titles(const QComboBox* menu)
{
    QStringList list;
    for (int item = 0; item < menu->count(); ++item)
        list << menu->itemText(item);
    return list;
}

} // namespace

/// Set-up, text, marks and page controls of the main window; its search has tests of its own.
class TestViewController : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QCoreApplication::setOrganizationName(u"Tarnwick"_s); }
    void init() { QSettings().clear(); }
    void thumbnailsGrowWithEachAppearance();
    void textIsShownAndCounted();
    void cancelledTextCanBeFetchedAgain();
    void marksAreListedLatestFirst();
    void pageFieldTakesLabelsAndNumbers();
    void zoomFieldTakesAndTellsTheScale();
    void outlineLeadsToItsPages();
    void commandsArePossibleOnlyWhereTheyDoSomething();
    void everyControlIsNamedAndReached();
    void controlsFitIntoNarrowWindows();
    void sizesAreRemembered();
    void dividersFollowTheKeys();
};

void TestViewController::thumbnailsGrowWithEachAppearance()
{
    for (const bool areShown : {true, false}) {
        ViewerFixture viewer(labelledPages(), areShown);
        const PDFThumbnailView& strip = *viewer->theThumbnailView();
        QSizeF size = strip.thumbnailSize();
        QVERIFY(viewer.appear());
        QCOMPARE(strip.pdfView(), areShown ? &viewer.pages() : nullptr);
        QCOMPARE(strip.thumbnailSize(), areShown ? size *= 1.1 : size);
        QCOMPARE(viewer->theSplitView()->sizes().value(0) > 0, areShown);
        viewer.flags().isShowingThumbnails = true;
        QCOMPARE(strip.pdfView(), areShown ? &viewer.pages() : nullptr); // until it shows again
        viewer->hide();
        viewer->show();
        QCOMPARE(strip.pdfView(), &viewer.pages());
        QCOMPARE(strip.thumbnailSize(), size * 1.1);
        QCOMPARE(viewer->theSplitView()->sizes().value(0) > 0, areShown);
        QVERIFY(viewer.pages().autoScales());
        if (!areShown)
            viewer.child<QToolButton>("sideBarButton")->click();
        QVERIFY(viewer->theSplitView()->sizes().value(0) >= 100);
        QVERIFY(viewer->theSplitView()->sizes().value(2) >= 250);
    }
}

void TestViewController::textIsShownAndCounted()
{
    // The long one is counted in a thread.
    const QString lines = u"seven words are on each such line\n"_s.repeated(50);
    const QList<std::pair<QStringList, int>> cases = {
        {{QString()}, 0}, {{u"one two"_s, u"three"_s}, 3}, {QStringList(150, lines), 150 * 50 * 7}};
    for (const auto& [pages, words] : cases) {
        PdfBuilder builder;
        for (const QString& page : pages)
            builder.addPage(page.toStdString());
        ViewerFixture viewer(builder);
        QCOMPARE(viewer->countText()->text(), QString());
        QVERIFY(viewer.appear());
        const QString whole = viewer.text().text().string();
        for (const QString& page : pages)
            QVERIFY(whole.contains(page.trimmed()));
        const QString countLine = u"%1  words  %2  chars"_s.arg(words).arg(whole.size());
        QTRY_COMPARE(viewer->countText()->text(), countLine);
        QCOMPARE(linesOf(*viewer->theTextView()->textStorage()).join(u'\n'), whole);

        viewer->countText()->setText(u"old"_s);
        viewer.beginSearch("o");
        QTRY_VERIFY(!viewer->isSearching());
        QCOMPARE(viewer->countText()->text(), u"old"_s);
        viewer->hide();
        viewer->show();
        QTRY_COMPARE(viewer->countText()->text(), countLine);
    }
}

void TestViewController::cancelledTextCanBeFetchedAgain()
{
    PdfBuilder builder;
    for (int page = 0; page < 300; ++page)
        builder.addPage("text");
    ViewerFixture viewer(builder);
    // With the first page, as on a busy machine all could come before the next look.
    connect(&viewer.text(), &PDFDocumentText::pageArrived, &viewer.text(), &PDFDocumentText::cancel,
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    viewer->show();
    QWidget* line = viewer.child<QWidget>("textProgress");
    QTRY_VERIFY(line->isVisible());
    const int arrived = viewer.text().arrivedCount();
    QCOMPARE(viewer->countText()->text().section(u' ', 0, 0), QString::number(arrived));
    QVERIFY(viewer.child<LossLine>("lossLine")->text().contains(u"reading stopped before"_s));
    for (QToolButton* button : line->findChildren<QToolButton*>()) {
        if (button->text() == u"Try Again"_s)
            button->click();
    }
    QTRY_VERIFY(viewer->countText()->text().startsWith(u"300  words  "_s));
    QVERIFY(!line->isVisible());
    QVERIFY(!viewer.child<LossLine>("lossLine")->isVisible());
}

void TestViewController::marksAreListedLatestFirst()
{
    ShownViewer viewer;
    QTRY_COMPARE(viewer.document().pageLabel(6), u"A-1"_s);
    QComboBox* menu = viewer->markPageMenu();
    QCOMPARE(titles(menu), QStringList{u"No marked page"_s});
    viewer->doChangePage();
    // The mark and the page that a step leads to.
    const auto step = [&](void (ViewController::*command)()) {
        ((*viewer).*command)();
        return std::pair(menu->currentIndex(), viewer.pages().currentPage());
    };
    QCOMPARE(step(&ViewController::goForwardMark).second, 0);
    QCOMPARE(step(&ViewController::goBackMark).second, 0);
    for (const int page : {0, 5, 6}) {
        viewer.pages().goToPage(page);
        viewer->setPageMark();
    }
    // Equal labels are different marks.
    const QStringList marks{u"A-1"_s, u"A-1"_s, u"1"_s};
    QCOMPARE(titles(menu), marks);
    QCOMPARE(step(&ViewController::goBackMark), std::pair(0, 6));
    QCOMPARE(step(&ViewController::goForwardMark), std::pair(1, 5));
    QCOMPARE(step(&ViewController::setPageMark), std::pair(1, 5));
    QCOMPARE(titles(menu), marks);
    QCOMPARE(step(&ViewController::goForwardMark), std::pair(2, 0));
    QCOMPARE(step(&ViewController::goForwardMark), std::pair(2, 0));
    menu->setCurrentIndex(-1);
    QCOMPARE(step(&ViewController::goBackMark), std::pair(-1, 0));
    QCOMPARE(step(&ViewController::goForwardMark), std::pair(0, 6));

    viewer->goForwardMark();
    viewer.pages().goToPage(2);
    viewer->hide();
    viewer->show();
    QCOMPARE(viewer->theMPagelist(), (std::vector<int>{6, 5, 0}));
    QCOMPARE(menu->currentIndex(), 0);
    QCOMPARE(viewer.pages().currentPage(), 2);
    viewer.pages().goToLastPage(); // which has no label
    viewer->setPageMark();
    QCOMPARE(titles(menu), QStringList{u"-1"_s} + marks);
}

void TestViewController::pageFieldTakesLabelsAndNumbers()
{
    ShownViewer viewer;
    QTRY_COMPARE(viewer.document().pageLabel(6), u"A-1"_s);
    // The page that a text leads to from the first one, and what the field shows then.
    const auto shownFor = [&viewer](const QString& input) -> QString {
        auto* field = viewer.child<QLineEdit>("pageField");
        viewer.pages().goToPage(0);
        viewer->goToPageDialog();
        field->setText(input);
        QTest::keyClick(field, Qt::Key_Return);
        return u"%1: %2 %3"_s.arg(viewer.pages().currentPage())
            .arg(field->text(), viewer.child<QLabel>("pageCountLabel")->text());
    };
    QCOMPARE(shownFor(u"3"_s), u"2: 3 of 10");
    QCOMPARE(shownFor(u"II"_s), u"4: ii (5 of 10)");
    QCOMPARE(shownFor(u"5"_s), u"4: ii (5 of 10)"); // where no label is equal
    QCOMPARE(shownFor(u" A-1 "_s), u"5: A-1 (6 of 10)");
    for (const QString& none : {u"11"_s, u"0"_s, QString(), u"99999999999999999999"_s})
        QCOMPARE(shownFor(none), u"0: 1 of 10");
}

void TestViewController::zoomFieldTakesAndTellsTheScale()
{
    ShownViewer viewer;
    QLineEdit* field = viewer.child<QComboBox>("zoomMenu")->lineEdit();
    field->setText(u"400 %"_s);
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(viewer.pages().scaleFactor(), 4.);
    viewer->autoZoom();
    QCOMPARE(field->text(), u"%1 %"_s.arg(qRound(viewer.pages().scaleFactor() * 100)));
}

void TestViewController::outlineLeadsToItsPages()
{
    PdfBuilder builder;
    QCOMPARE(builder.addObject("<< /Type /Outlines /First 5 0 R /Last 5 0 R /Count 2 >>"), 4);
    builder.addObject("<< /Title (Part) /Parent 4 0 R /First 6 0 R /Last 6 0 R /Count 1 >>");
    builder.addObject("<< /Title (Chapter) /Parent 5 0 R /Dest [ 10 0 R /Fit ] >>");
    builder.addPage().addPage().setCatalogEntries("/Outlines 4 0 R"); // the second is object 10
    ViewerFixture viewer(builder, false);
    auto* tabs = viewer.child<QTabWidget>("sideTabs");
    QVERIFY(viewer.appear());
    QTRY_COMPARE(tabs->count(), 1);
    viewer->toggleSideBar(true);
    auto* tree = viewer.child<QTreeView>("outlineView");
    QVERIFY(tree->isVisible());
    const QModelIndex part = tree->model()->index(0, 0);
    const QModelIndex chapter = tree->model()->index(0, 0, part);
    QCOMPARE(chapter.data().toString(), u"Chapter"_s);
    QCOMPARE(chapter.parent(), part);
    emit tree->activated(part);
    QCOMPARE(viewer.pages().currentPage(), 0);
    emit tree->activated(chapter);
    QCOMPARE(viewer.pages().currentPage(), 1);
}

void TestViewController::commandsArePossibleOnlyWhereTheyDoSomething()
{
    ShownViewer viewer;
    const auto possible = [&viewer](const QStringList& commands) {
        QStringList list;
        for (const QString& command : commands) {
            if (viewer->validateCommand(command))
                list << command;
        }
        return list;
    };
    const QStringList commands{
        u"goForwardMark"_s, u"goBackMark"_s, u"doFindNext"_s, u"doFindSelection"_s};
    const auto* next = viewer.child<QToolButton>("nextPageButton");
    const auto* previous = viewer.child<QToolButton>("previousPageButton");
    QCOMPARE(possible(commands), QStringList());
    QVERIFY(next->isEnabled() && !previous->isEnabled());
    viewer->setPageMark();
    viewer.pages().goToLastPage();
    QVERIFY(!next->isEnabled() && previous->isEnabled());
    viewer->setPageMark();
    viewer.beginSearch("page");
    QCOMPARE(possible(commands), QStringList({commands.at(0), commands.at(2), commands.at(3)}));
}

void TestViewController::everyControlIsNamedAndReached()
{
    ShownViewer viewer;
    viewer->setFocus(); // as a window does that shows
    QCOMPARE(viewer->focusWidget(), &viewer.pages());
    QSet<const QWidget*> reached;
    const QWidget* widget = &*viewer;
    do {
        reached.insert(widget);
        widget = widget->nextInFocusChain();
    } while (widget != &*viewer);
    int controls = 0;
    for (const QWidget* control : viewer->findChildren<QWidget*>()) {
        const bool isInner = qobject_cast<const QComboBox*>(control->parentWidget())
            || control->objectName().startsWith(u"qt_"_s);
        if (isInner || !control->isVisible() || !(control->focusPolicy() & Qt::TabFocus))
            continue;
        QVERIFY2(reached.contains(control), qPrintable(control->objectName()));
        QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(
            const_cast<QWidget*>(control));
        QVERIFY2(interface && !interface->text(QAccessible::Name).isEmpty(),
            qPrintable(control->objectName()));
        const QRect place(control->mapTo(&*viewer, QPoint()), control->size());
        QVERIFY2(viewer->rect().contains(place), qPrintable(control->objectName()));
        ++controls;
    }
    QVERIFY(controls >= 15);
    for (QLabel* label : viewer->findChildren<QLabel*>()) {
        const QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(label);
        const QString text = label->text().remove(u'&');
        QCOMPARE(interface->text(QAccessible::Name), text);
    }
    QVERIFY(!viewer->theTextView()->isFindBarEnabled());
}

void TestViewController::controlsFitIntoNarrowWindows()
{
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        ViewerFixture viewer(labelledPages());
        viewer->setLayoutDirection(direction);
        QVERIFY(viewer.appear());
        viewer->searchField()->setText(u"page"_s);
        viewer.child<ProgressLine>("searchProgress")->showProgress(u"Searching"_s, 1, 2);
        for (const int width : {520, 1100}) {
            viewer->resize(width, 600);
            QCoreApplication::sendPostedEvents();
            QCOMPARE(viewer->width(), width);
            QRegion taken;
            for (QWidget* control : viewer->findChildren<QWidget*>()) {
                if (!control->parentWidget()->objectName().endsWith(u"Group"_s))
                    continue;
                const QRect place(control->mapTo(&*viewer, QPoint()), control->size());
                QVERIFY2(viewer->rect().contains(place), qPrintable(control->objectName()));
                QVERIFY2(!taken.intersects(place), qPrintable(control->objectName()));
                QVERIFY2(control->width() >= control->minimumSizeHint().width(),
                    qPrintable(control->objectName()));
                taken += place;
            }
            QVERIFY(!taken.isEmpty());
        }
    }
}

void TestViewController::sizesAreRemembered()
{
    {
        ShownViewer viewer;
        viewer->theSplitView()->setSizes({210, 424, 380});
        viewer->toggleSideBar(false);
        viewer->hide();
    }
    ShownViewer viewer;
    const QList<int> sizes = viewer->theSplitView()->sizes();
    QVERIFY2(qAbs(sizes.value(0) - 210) <= 2, qPrintable(QString::number(sizes.value(0))));
    QVERIFY2(qAbs(sizes.value(2) - 380) <= 2, qPrintable(QString::number(sizes.value(2))));
}

void TestViewController::dividersFollowTheKeys()
{
    ShownViewer viewer;
    QSplitter& panes = *viewer->theSplitView();
    QSplitterHandle* const divider = panes.handle(1);
    const int width = panes.sizes().at(0);
    QTest::keyClick(divider, Qt::Key_Right);
    QCOMPARE(panes.sizes().at(0), width + 16);
    QTest::keyClick(divider, Qt::Key_Left, Qt::ShiftModifier);
    QVERIFY(panes.sizes().at(0) < width);
    QTest::keyClick(divider, Qt::Key_Up);
    QTest::keyClick(divider, Qt::Key_Home);
    QCOMPARE(panes.sizes().at(0), 0);
    QTest::keyClick(divider, Qt::Key_Right);
    QVERIFY(panes.sizes().at(0) > 0);
}

QTEST_MAIN(TestViewController)
#include "tst_ViewController.moc"
