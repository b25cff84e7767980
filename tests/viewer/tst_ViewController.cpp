#include "ViewerFixture.h"

#include "platform/PDFThumbnailView.h"
#include "viewer/SearchField.h"
#include "views/PlainTextView.h"

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

namespace {

/// Ten pages with the labels 1, 2, 3, i, ii, A-1, A-1, then plain numbers again from 8.
PdfBuilder labelledPages()
{
    PdfBuilder builder;
    for (int page = 1; page <= 10; ++page)
        builder.addPage("page " + std::to_string(page));
    builder.setCatalogEntries("/PageLabels << /Nums [ 0 << /S /D >> 3 << /S /r >> "
                              "5 << /P (A-1) >> 7 << /S /D /St 8 >> ] >>");
    return builder;
}

QString text(const PlainTextView* view)
{
    QStringList lines;
    for (qsizetype line = 0; line < view->textStorage()->lineCount(); ++line)
        lines << view->textStorage()->line(line).text;
    return lines.join(QLatin1Char('\n'));
}

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
    void init() { QSettings().clear(); }
    void thumbnailsGrowWithEachAppearance();
    void stripStaysClosedWithoutThumbnails();
    void textIsShownAndCounted_data();
    void textIsShownAndCounted();
    void cancelledTextCanBeFetchedAgain();
    void marksAreListedLatestFirst();
    void marksWithEqualLabelsStayApart();
    void marksOutliveAppearances();
    void pageFieldTakesLabelsAndNumbers_data();
    void pageFieldTakesLabelsAndNumbers();
    void zoomedPagesFitAgain();
    void outlineLeadsToItsPages();
    void commandsArePossibleOnlyWhereTheyDoSomething();
    void everyControlIsNamedAndReached();
    void sizesAreRemembered();
    void dividersFollowTheKeys();
};

void TestViewController::thumbnailsGrowWithEachAppearance()
{
    ViewerFixture viewer(labelledPages());
    const QSizeF layoutSize = viewer->theThumbnailView()->thumbnailSize();
    QVERIFY(viewer.appear());
    QCOMPARE(viewer->theThumbnailView()->pdfView(), &viewer.pages());
    QCOMPARE(viewer->theThumbnailView()->thumbnailSize(), layoutSize * 1.1);
    QCOMPARE(viewer.pages().document(), &viewer.document());
    QVERIFY(viewer.pages().autoScales());
    viewer->hide();
    viewer->show();
    QCOMPARE(viewer->theThumbnailView()->thumbnailSize(), layoutSize * 1.1 * 1.1);
    QVERIFY(viewer->theSplitView()->sizes().value(0) > 0);
}

void TestViewController::stripStaysClosedWithoutThumbnails()
{
    ViewerFixture viewer(labelledPages(), false);
    const QSizeF layoutSize = viewer->theThumbnailView()->thumbnailSize();
    QVERIFY(viewer.appear());
    QCOMPARE(viewer->theThumbnailView()->pdfView(), nullptr);
    QCOMPARE(viewer->theThumbnailView()->thumbnailSize(), layoutSize);
    QCOMPARE(viewer->theSplitView()->sizes().value(0), 0);

    viewer.flags().isShowingThumbnails = true;
    QCOMPARE(viewer->theThumbnailView()->pdfView(), nullptr);
    viewer->hide();
    viewer->show();
    QCOMPARE(viewer->theThumbnailView()->pdfView(), &viewer.pages());
    QCOMPARE(viewer->theThumbnailView()->thumbnailSize(), layoutSize * 1.1);
    QCOMPARE(viewer->theSplitView()->sizes().value(0), 0);
    viewer.child<QToolButton>("sideBarButton")->click();
    QVERIFY(viewer->theSplitView()->sizes().value(0) >= 100);
    QVERIFY(viewer->theSplitView()->sizes().value(2) >= 250);
}

void TestViewController::textIsShownAndCounted_data()
{
    QTest::addColumn<QStringList>("pages");
    QTest::addColumn<int>("words");
    QTest::newRow("no text") << QStringList{QString()} << 0;
    QTest::newRow("pages follow each other")
        << QStringList{QStringLiteral("one two"), QStringLiteral("three")} << 3;
    // So long that it is counted in a thread.
    const QString page = QStringLiteral("seven words are on each such line\n").repeated(50);
    QTest::newRow("long") << QStringList(150, page) << 150 * 50 * 7;
}

void TestViewController::textIsShownAndCounted()
{
    QFETCH(QStringList, pages);
    QFETCH(int, words);
    PdfBuilder builder;
    for (const QString& page : pages)
        builder.addPage(page.toStdString());
    ViewerFixture viewer(builder);
    QCOMPARE(viewer->countText()->text(), QString());
    QVERIFY(viewer.appear());
    const QString whole = viewer.text().string();
    for (const QString& page : pages)
        QVERIFY(whole.contains(page.trimmed()));
    const QString countLine = QStringLiteral("%1  words  %2  chars").arg(words).arg(whole.size());
    QTRY_COMPARE(viewer->countText()->text(), countLine);
    QCOMPARE(text(viewer->theTextView()), whole);

    viewer->countText()->setText(QStringLiteral("old"));
    viewer->searchField()->setText(QStringLiteral("o"));
    viewer->doSearchAction();
    QTRY_VERIFY(!viewer->isSearching());
    QCOMPARE(viewer->countText()->text(), QStringLiteral("old"));
    viewer->hide();
    viewer->show();
    QTRY_COMPARE(viewer->countText()->text(), countLine);
}

void TestViewController::cancelledTextCanBeFetchedAgain()
{
    PdfBuilder builder;
    for (int page = 0; page < 300; ++page)
        builder.addPage("text");
    ViewerFixture viewer(builder);
    viewer->show();
    QTRY_VERIFY(viewer.text().arrivedCount() > 0);
    viewer.text().cancel();
    QWidget* line = viewer.child<QWidget>("textProgress");
    QTRY_VERIFY(line->isVisible());
    QCOMPARE(viewer->countText()->text(), QString());
    for (QToolButton* button : line->findChildren<QToolButton*>()) {
        if (button->text() == QStringLiteral("Try Again"))
            button->click();
    }
    QTRY_VERIFY(viewer->countText()->text().startsWith(QStringLiteral("300  words  ")));
    QVERIFY(!line->isVisible());
}

void TestViewController::marksAreListedLatestFirst()
{
    ViewerFixture viewer(labelledPages());
    QVERIFY(viewer.appear());
    QComboBox* menu = viewer->markPageMenu();
    QCOMPARE(titles(menu), QStringList{QStringLiteral("No marked page")});
    viewer->doChangePage();
    viewer->goForwardMark();
    viewer->goBackMark();
    QCOMPARE(viewer.pages().currentPage(), 0);

    for (const int page : {0, 4, 8}) {
        viewer.pages().goToPage(page);
        viewer->setPageMark();
    }
    const QStringList marks{QStringLiteral("9"), QStringLiteral("ii"), QStringLiteral("1")};
    QCOMPARE(titles(menu), marks);
    QCOMPARE(menu->currentIndex(), 0);

    viewer->goBackMark();
    QCOMPARE(menu->currentIndex(), 0);
    viewer->goForwardMark();
    QCOMPARE(menu->currentIndex(), 1);
    QCOMPARE(viewer.pages().currentPage(), 4);
    viewer->setPageMark();
    QCOMPARE(titles(menu), marks);
    QCOMPARE(menu->currentIndex(), 1);
    viewer->goForwardMark();
    viewer->goForwardMark();
    QCOMPARE(menu->currentIndex(), 2);
    QCOMPARE(viewer.pages().currentPage(), 0);
    menu->setCurrentIndex(-1);
    viewer->goBackMark();
    QCOMPARE(menu->currentIndex(), -1);
    viewer->goForwardMark();
    QCOMPARE(viewer.pages().currentPage(), 8);
}

void TestViewController::marksWithEqualLabelsStayApart()
{
    ViewerFixture viewer(labelledPages());
    QVERIFY(viewer.appear());
    QTRY_COMPARE(viewer.document().pageLabel(6), QStringLiteral("A-1"));
    for (const int page : {5, 6}) {
        viewer.pages().goToPage(page);
        viewer->setPageMark();
    }
    QCOMPARE(titles(viewer->markPageMenu()),
        (QStringList{QStringLiteral("A-1"), QStringLiteral("A-1")}));
    viewer->goForwardMark();
    QCOMPARE(viewer.pages().currentPage(), 5);
}

void TestViewController::marksOutliveAppearances()
{
    ViewerFixture viewer(labelledPages());
    QVERIFY(viewer.appear());
    viewer->setPageMark();
    viewer.pages().goToPage(2);
    viewer->setPageMark();
    viewer->goForwardMark();
    viewer.pages().goToPage(5);
    viewer->hide();
    viewer->show();
    QCOMPARE(viewer->theMPagelist(), (std::vector<int>{2, 0}));
    QCOMPARE(viewer->markPageMenu()->currentIndex(), 0);
    QCOMPARE(viewer.pages().currentPage(), 5);
}

void TestViewController::pageFieldTakesLabelsAndNumbers_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<int>("page");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("count");
    const auto row
        = [](const char* name, const char* input, int page, const char* field, const char* count) {
              QTest::newRow(name) << QString::fromLatin1(input) << page
                                  << QString::fromLatin1(field) << QString::fromLatin1(count);
          };
    row("label that is the number", "3", 2, "3", "of 10");
    row("label in capitals", "II", 4, "ii", "(5 of 10)");
    row("number where no label is equal", "5", 4, "ii", "(5 of 10)");
    row("first of equal labels", " A-1 ", 5, "A-1", "(6 of 10)");
    row("no such page", "11", 0, "1", "of 10");
    row("zero", "0", 0, "1", "of 10");
    row("nothing", "", 0, "1", "of 10");
    row("beyond every number", "99999999999999999999", 0, "1", "of 10");
}

void TestViewController::pageFieldTakesLabelsAndNumbers()
{
    QFETCH(QString, input);
    ViewerFixture viewer(labelledPages());
    QVERIFY(viewer.appear());
    QTRY_COMPARE(viewer.document().pageLabel(6), QStringLiteral("A-1"));
    auto* field = viewer.child<QLineEdit>("pageField");
    viewer->goToPageDialog();
    field->setText(input);
    QTest::keyClick(field, Qt::Key_Return);
    QTEST(viewer.pages().currentPage(), "page");
    QTEST(field->text(), "field");
    QTEST(viewer.child<QLabel>("pageCountLabel")->text(), "count");
}

void TestViewController::zoomedPagesFitAgain()
{
    ViewerFixture viewer(labelledPages());
    QVERIFY(viewer.appear());
    const double fitting = viewer.pages().scaleFactor();
    QLineEdit* field = viewer.child<QComboBox>("zoomMenu")->lineEdit();
    field->setText(QStringLiteral("400 %"));
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(viewer.pages().scaleFactor(), 4.);
    viewer->zoomIn();
    QVERIFY(viewer.pages().scaleFactor() > 4);
    viewer->autoZoom();
    QCOMPARE(viewer.pages().scaleFactor(), fitting);
    QCOMPARE(field->text(), QStringLiteral("%1 %").arg(qRound(fitting * 100)));
}

void TestViewController::outlineLeadsToItsPages()
{
    PdfBuilder builder = labelledPages();
    const int outlines = builder.nextNumber();
    const auto number = [](int object) { return std::to_string(object) + " 0 R"; };
    // Pages are objects of their own, two for each page behind the font: content first.
    builder.addObject("<< /Type /Outlines /First " + number(outlines + 1) + " /Last "
        + number(outlines + 1) + " /Count 2 >>");
    builder.addObject("<< /Title (Part) /Parent " + number(outlines) + " /First "
        + number(outlines + 2) + " /Last " + number(outlines + 2) + " /Count 1 >>");
    builder.addObject("<< /Title (Chapter) /Parent " + number(outlines + 1) + " /Dest [ "
        + number(5 + 2 * 6) + " /Fit ] >>");
    builder.setCatalogEntries("/Outlines " + number(outlines));
    ViewerFixture viewer(builder, false);
    auto* tabs = viewer.child<QTabWidget>("sideTabs");
    QVERIFY(viewer.appear());
    QTRY_COMPARE(tabs->count(), 1);
    viewer->toggleSideBar(true);
    auto* tree = viewer.child<QTreeView>("outlineView");
    QVERIFY(tree->isVisible());
    const QModelIndex part = tree->model()->index(0, 0);
    const QModelIndex chapter = tree->model()->index(0, 0, part);
    QCOMPARE(chapter.data().toString(), QStringLiteral("Chapter"));
    QCOMPARE(chapter.parent(), part);
    emit tree->activated(part);
    QCOMPARE(viewer.pages().currentPage(), 0);
    emit tree->activated(chapter);
    QCOMPARE(viewer.pages().currentPage(), 6);
}

void TestViewController::commandsArePossibleOnlyWhereTheyDoSomething()
{
    ViewerFixture viewer(labelledPages());
    QVERIFY(viewer.appear());
    const auto possible = [&viewer](const QStringList& commands) {
        QStringList list;
        for (const QString& command : commands) {
            if (viewer->validateCommand(command))
                list << command;
        }
        return list;
    };
    const QStringList commands{
        QStringLiteral("goToNextPage"),
        QStringLiteral("goToPreviousPage"),
        QStringLiteral("goForwardMark"),
        QStringLiteral("goBackMark"),
        QStringLiteral("doFindNext"),
        QStringLiteral("doFindSelection"),
        QStringLiteral("copy"),
        QStringLiteral("goBack"),
    };
    QCOMPARE(possible(commands), commands.mid(0, 1));
    viewer->setPageMark();
    viewer->goToLastPage();
    viewer->setPageMark();
    viewer->searchField()->setText(QStringLiteral("page"));
    viewer->doSearchAction();
    viewer->goToLastPage();
    QCOMPARE(possible(commands),
        (QStringList{
            commands[1], commands[2], commands[4], commands[5], commands[6], commands[7]}));
}

void TestViewController::everyControlIsNamedAndReached()
{
    ViewerFixture viewer(labelledPages());
    QVERIFY(viewer.appear());
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
            || control->objectName().startsWith(QStringLiteral("qt_"));
        if (isInner || !control->isVisible() || !(control->focusPolicy() & Qt::TabFocus))
            continue;
        QVERIFY2(reached.contains(control), qPrintable(control->objectName()));
        QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(
            const_cast<QWidget*>(control));
        QVERIFY2(interface && !interface->text(QAccessible::Name).isEmpty(),
            qPrintable(control->objectName()));
        const QRect place(control->mapTo(&*viewer, QPoint()), control->size());
        QVERIFY2(viewer->rect().contains(place), qPrintable(control->objectName()));
        QVERIFY2(control->width() >= control->minimumSizeHint().width(),
            qPrintable(control->objectName()));
        ++controls;
    }
    QVERIFY(controls >= 15);
    QVERIFY(!viewer->theTextView()->isFindBarEnabled());
}

void TestViewController::sizesAreRemembered()
{
    {
        ViewerFixture viewer(labelledPages());
        QVERIFY(viewer.appear());
        viewer->theSplitView()->setSizes({210, 424, 380});
        viewer->toggleSideBar(false);
        viewer->hide();
    }
    ViewerFixture viewer(labelledPages());
    QVERIFY(viewer.appear());
    const QList<int> sizes = viewer->theSplitView()->sizes();
    QVERIFY2(qAbs(sizes.value(0) - 210) <= 2, qPrintable(QString::number(sizes.value(0))));
    QVERIFY2(qAbs(sizes.value(2) - 380) <= 2, qPrintable(QString::number(sizes.value(2))));
}

void TestViewController::dividersFollowTheKeys()
{
    ViewerFixture viewer(labelledPages());
    QVERIFY(viewer.appear());
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

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Tarnwick"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_ViewController"));
    TestViewController test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_ViewController.moc"
