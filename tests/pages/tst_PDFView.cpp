#include "ShownPages.h"

#include "support/Rows.h"
#include "support/ScrollBars.h"

#include <QAccessible>
#include <QClipboard>
#include <QScrollBar>
#include <QSignalSpy>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace tarnwick;

class TestPDFView : public QObject
{
    Q_OBJECT

private slots:
    void goesToPages();
    void remembersJumps();
    void oneNotchGoesOneWay_data();
    void oneNotchGoesOneWay();
    void scales();
    void drawsAndGivesBack();
    void saysWhenAPageCannotBeDrawn();
    void selectsWithTheMouse();
    void copiesAll();
    void readsThePageAloud();
    void horizontalBarShowsWhatIsInView();
};

void TestPDFView::goesToPages()
{
    Shown shown(tenPages());
    QSignalSpy changes(&shown.view, &PDFView::currentPageChanged);
    shown.view.goToPage(4);
    QCOMPARE(shown.view.currentPage(), 4);
    QCOMPARE(changes.size(), 1);
    QTest::keyClick(&shown.view, Qt::Key_End);
    QCOMPARE(shown.view.currentPage(), 9);
    QVERIFY(!shown.view.validateCommand(u"goToNextPage"_s));
    shown.view.goToPreviousPage();
    QCOMPARE(shown.view.currentPage(), 8);
    shown.view.goToPage(10);
    shown.view.goToPage(-1);
    QCOMPARE(shown.view.currentPage(), 8);
    QTest::keyClick(&shown.view, Qt::Key_Home);
    const int before = shown.view.verticalScrollBar()->value();
    QTest::keyClick(&shown.view, Qt::Key_Space);
    QVERIFY(shown.view.verticalScrollBar()->value() > before + 300);
    QTest::keyClick(&shown.view, Qt::Key_Space, Qt::ShiftModifier);
    QCOMPARE(shown.view.verticalScrollBar()->value(), before);
    // Several pages fit, the last cannot come to the top: it is the present one all the same.
    shown.view.setScaleFactor(0.1);
    shown.view.goToPage(9);
    QCOMPARE(shown.view.currentPage(), 9);
}

void TestPDFView::remembersJumps()
{
    Shown shown(tenPages());
    PDFLink link;
    link.page = 6;
    shown.view.followLink(link);
    shown.view.goToPage(2);
    QTest::keyClick(&shown.view, Qt::Key_Left, Qt::AltModifier);
    QCOMPARE(shown.view.currentPage(), 6);
    shown.view.goBack();
    QCOMPARE(shown.view.currentPage(), 0);
    shown.view.goForward();
    QCOMPARE(shown.view.currentPage(), 6);
}

using OneNotchGoesOneWay = Rows<std::function<void(PDFView&)>>;

void TestPDFView::oneNotchGoesOneWay_data()
{
    const OneNotchGoesOneWay row;
    const auto showMatch = [](PDFView& view, int page) {
        view.setCurrentSelection(PDFSelection(PDFSelection::Range{page, 0, 5}), false);
        view.scrollSelectionToVisible();
    };
    const auto openAgain = [](PDFView& view) {
        PDFDocument* const document = view.document();
        view.setDocument(nullptr, nullptr);
        view.setDocument(document, nullptr);
    };
    row("nothing before", [](PDFView&) {});
    row("after a click", [](PDFView& v) { QTest::mouseClick(v.viewport(), Qt::LeftButton); });
    row("after a move by the scroll bar", [](PDFView& v) { v.verticalScrollBar()->setValue(800); });
    row("after a touchpad's move", [](PDFView& v) { turnWheel(*v.viewport(), {}, {0, -50}); });
    row("after a view down", [](PDFView& v) { QTest::keyClick(&v, Qt::Key_Space); });
    row("after a jump", [](PDFView& v) { v.goToPage(3); });
    row("after a jump to a point", [](PDFView& v) { v.goToPoint(3, QPointF(10, 300)); });
    row("after a match was shown", [showMatch](PDFView& v) { showMatch(v, 0); });
    row("while a match is still to be found on its page",
        [showMatch](PDFView& v) { showMatch(v, 5); });
    row("in another document", openAgain);
}

void TestPDFView::oneNotchGoesOneWay()
{
    const auto [deed] = OneNotchGoesOneWay::fetch();
    Shown shown(tenPages());
    QVERIFY(shown.waitForText());
    if (QTest::currentDataTag() != QByteArray("nothing before"))
        turnWheel(*shown.view.viewport(), {0, -1200});
    deed(shown.view);
    const int before = shown.view.verticalScrollBar()->value();
    turnWheel(*shown.view.viewport(), {0, -120});
    QTRY_COMPARE(shown.view.verticalScrollBar()->value(), before + 97);
}

void TestPDFView::scales()
{
    Shown shown(tenPages());
    QVERIFY(shown.view.autoScales());
    const double narrow = shown.view.scaleFactor();
    shown.view.resize(800, 500);
    QTRY_VERIFY(shown.view.scaleFactor() > 1.9 * narrow);
    QCOMPARE(shown.view.horizontalScrollBar()->maximum(), 0);
    turnWheel(*shown.view.viewport(), {0, 120}, {}, {9, 9}, Qt::ControlModifier);
    QVERIFY(!shown.view.autoScales());
    const double zoomed = shown.view.scaleFactor();
    QVERIFY(zoomed > 2 * narrow);
    shown.view.resize(700, 500);
    QCOMPARE(shown.view.scaleFactor(), zoomed);
    shown.view.setScaleFactor(1000);
    QVERIFY(!shown.view.validateCommand(u"zoomIn"_s));
    shown.view.fitPage();
    QVERIFY(792 * shown.view.scaleFactor() * shown.view.logicalDpiY() / 72 < 500);
    QVERIFY(shown.waitForText());
    shown.view.rotateClockwise();
    QCOMPARE(shown.view.rotation(), 1);
    QVERIFY(shown.view.characterRect(4).top() > shown.view.characterRect(0).bottom());
}

void TestPDFView::drawsAndGivesBack()
{
    PdfBuilder builder;
    for (int page = 0; page < 60; ++page)
        builder.addDrawing("1 0 0 rg 0 0 612 792 re f");
    Shown shown(builder.bytes());
    QTRY_COMPARE(colourAt(shown.view, {200, 200}), QColor(Qt::red));
    for (int page = 0; page < 60; page += 6) {
        shown.view.goToPage(page);
        QTRY_COMPARE(colourAt(shown.view, {200, 200}), QColor(Qt::red));
    }
    // What is far from view is given back: a page at this size takes about 800 KB.
    QVERIFY(shown.view.tileBytes() > 0);
    QVERIFY2(shown.view.tileBytes() < 18 * 800 * 1024,
        qPrintable(QString::number(shown.view.tileBytes())));
    shown.view.hide();
    QCOMPARE(shown.view.tileBytes(), 0);
}

void TestPDFView::saysWhenAPageCannotBeDrawn()
{
    Shown shown(tenPages());
    const QList<qint64> engines = shown.document->engineProcessIds();
    QVERIFY(shown.waitForText());
    // What shows is there. The view asks for links page by page, and two pages show: behind two
    // requests of one's own nothing is under way.
    for (const int page : {0, 1})
        OpenedDocument::waitFor(shown.document->requestLinks(page, &shown.view));
    QTRY_VERIFY(shown.view.tileBytes() > 0 && !shown.view.isDrawing());
    QVERIFY(!engines.isEmpty());
    QVERIFY(!shown.view.currentPageText().contains(u"could not be drawn"_s));
    // A scale at which a tile is still to come, and an engine that ends while it is at it.
    ::kill(static_cast<pid_t>(engines.first()), SIGSTOP);
    shown.view.setScaleFactor(2.5);
    QTRY_VERIFY(shown.view.isDrawing()); // once zooming has come to rest
    ::kill(static_cast<pid_t>(engines.first()), SIGKILL);
    QTRY_VERIFY_WITH_TIMEOUT(
        shown.view.currentPageText().startsWith(u"This page could not be drawn."_s), 20'000);
    shown.view.goToPage(5);
    QTRY_VERIFY_WITH_TIMEOUT(shown.view.currentPageText().startsWith(u"Alpha"_s), 20'000);
}

void TestPDFView::selectsWithTheMouse()
{
    Shown shown(tenPages());
    QVERIFY(shown.waitForText());
    shown.text->fetch();
    QTRY_VERIFY(shown.text->isWhole());
    QWidget* const page = shown.view.viewport();
    QApplication::setDoubleClickInterval(60'000); // however slow the machine is
    QTest::mousePress(page, Qt::LeftButton, {}, shown.at(6));
    QTest::mouseMove(page, shown.at(10));
    QTest::mouseRelease(page, Qt::LeftButton, {}, shown.at(10));
    QCOMPARE(shown.selected(), u"beta"_s);
    QTest::mouseClick(page, Qt::LeftButton, Qt::ShiftModifier, shown.at(3));
    QCOMPARE(shown.selected(), u"ha "_s);
    QTest::mouseDClick(page, Qt::LeftButton, {}, shown.at(7));
    QCOMPARE(shown.selected(), u"beta"_s);
    QTest::mousePress(page, Qt::LeftButton, {}, shown.at(7));
    QCOMPARE(shown.selected(), u"Alpha beta 0"_s);
    QTest::mouseRelease(page, Qt::LeftButton, {}, shown.at(7));
    QTest::keyClick(&shown.view, Qt::Key_Escape);
    QVERIFY(shown.view.currentSelection().isEmpty());
    QVERIFY(!shown.view.validateCommand(u"copy"_s));
}

void TestPDFView::copiesAll()
{
    Shown shown(tenPages());
    QApplication::clipboard()->clear();
    // The texts are still to come: the copy is made once they are there.
    shown.view.selectAll();
    QTRY_VERIFY(!shown.view.currentSelection().isEmpty());
    shown.view.copy();
    QTRY_COMPARE(QApplication::clipboard()->text().count(u"second line"_s), 10);
}

void TestPDFView::readsThePageAloud()
{
    Shown shown(tenPages());
    QVERIFY(shown.waitForText());
    QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(&shown.view);
    QVERIFY(face && face->textInterface());
    QCOMPARE(face->text(QAccessible::Name), u"Page 1 of 10"_s);
    QCOMPARE(face->textInterface()->text(0, 5), u"Alpha"_s);
    shown.view.goToPage(2);
    QCOMPARE(face->text(QAccessible::Name), u"Page 3 of 10"_s);
    QTRY_COMPARE(face->textInterface()->text(11, 12), u"2"_s);
    face->textInterface()->setSelection(0, 6, 10);
    shown.text->fetch();
    QTRY_COMPARE(shown.selected(), u"beta"_s);
    face->textInterface()->setSelection(0, -5, 100'000);
    QCOMPARE(face->textInterface()->selectionCount(), 1);

    shown.view.setScaleFactor(8);
    shown.view.goToPage(2);
    const auto isInView = [&shown](int character) {
        return shown.view.viewport()->rect().intersects(shown.view.characterRect(character));
    };
    for (const int character : {11, 0}) {
        QVERIFY(!isInView(character));
        face->textInterface()->setCursorPosition(character);
        QTRY_VERIFY(isInView(character));
        QCOMPARE(face->textInterface()->cursorPosition(), character);
    }
    face->textInterface()->setCursorPosition(100'000);
    QCOMPARE(face->textInterface()->cursorPosition(), face->textInterface()->characterCount());
    shown.view.goToPage(3);
    QCOMPARE(face->textInterface()->cursorPosition(), 0);
}

void TestPDFView::horizontalBarShowsWhatIsInView()
{
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        Shown shown(tenPages());
        shown.view.setLayoutDirection(direction);
        shown.view.setScaleFactor(8);
        QVERIFY(shown.waitForText());
        QScrollBar& bar = *shown.view.horizontalScrollBar();
        for (const int value : {bar.maximum(), bar.minimum()}) {
            bar.setValue(value);
            const bool isLeftShown = shown.view.characterRect(0).x() > 0; // a tenth into the page
            QCOMPARE(isHandleAtTheLeft(bar), isLeftShown);
        }
    }
}

QTEST_MAIN(TestPDFView)
#include "tst_PDFView.moc"
