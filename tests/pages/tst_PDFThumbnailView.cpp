#include "ShownPages.h"
#include "pages/PDFThumbnailView.h"

#include "support/LostPages.h"

#include <QScrollBar>

#include <csignal>

using namespace tarnwick;
using namespace Qt::StringLiterals;

class TestPDFThumbnailView : public QObject
{
    Q_OBJECT

private slots:
    void survivesItsDocument();
    void outlivesItsView();
    void followsAndLeads();
    void damagedPagesSayWhy();
    void comesAfterThePage();
};

void TestPDFThumbnailView::survivesItsDocument()
{
    PDFView view;
    PDFThumbnailView strip;
    strip.setPDFView(&view);
    view.show();
    strip.show();
    {
        Shown shown(tenPages());
        view.setDocument(shown.document.get(), shown.text.get());
        QTRY_VERIFY(view.tileBytes() > 0);
    }
    QVERIFY(!view.document());
    QCOMPARE(view.currentPage(), -1);
    QVERIFY(strip.pageRect(0).isNull());
    view.goToLastPage();
    view.selectAll();
    QTest::keyClick(&strip, Qt::Key_Down);
    QVERIFY(!view.validateCommand(u"print"_s));
    QVERIFY(!view.grab().isNull() && !strip.grab().isNull());
}

void TestPDFThumbnailView::outlivesItsView()
{
    PDFThumbnailView strip;
    {
        Shown shown(tenPages());
        strip.setPDFView(&shown.view);
        strip.show();
    }
    QVERIFY(!strip.pdfView());
    QCOMPARE(strip.verticalScrollBar()->maximum(), 0);
}

void TestPDFThumbnailView::followsAndLeads()
{
    Shown shown(tenPages());
    PDFThumbnailView strip;
    QVERIFY(strip.pageRect(0).isNull());
    strip.resize(130, 400);
    strip.setPDFView(&shown.view);
    strip.show();
    QTest::mouseClick(strip.viewport(), Qt::LeftButton, {}, strip.pageRect(1).center());
    QCOMPARE(shown.view.currentPage(), 1);
    strip.setFocus();
    QTRY_VERIFY(strip.hasFocus());
    const QImage focused = strip.viewport()->grab().toImage();
    QCOMPARE(focused.pixelColor(strip.pageRect(0).center()), QColor(Qt::white));
    QTest::keyClick(&strip, Qt::Key_Down);
    QCOMPARE(shown.view.currentPage(), 2);
    shown.view.goToPage(9);
    QVERIFY(strip.viewport()->rect().contains(strip.pageRect(9)));
    const QSize before = strip.pageRect(9).size();
    strip.setThumbnailSize(strip.thumbnailSize() * 1.1);
    QCOMPARE(strip.thumbnailSize(), QSizeF(99, 132));
    QCOMPARE(strip.pageRect(9).size() - before, QSize(9, 12));
    QVERIFY(strip.viewport()->rect().contains(strip.pageRect(9)));
    // A fine wheel goes as far as a coarse one.
    strip.verticalScrollBar()->setValue(0);
    for (int turn = 0; turn < 120; ++turn)
        turnWheel(*strip.viewport(), {0, -1});
    QCOMPARE(strip.verticalScrollBar()->value(), 80);
    strip.setThumbnailSize({1, 1e9});
    QCOMPARE(strip.thumbnailSize(), QSizeF(16, 1024));
    strip.setPDFView(nullptr);
    QVERIFY(strip.pageRect(9).isNull());
}

/// Blank paper would pass for a page that shows nothing.
void TestPDFThumbnailView::damagedPagesSayWhy()
{
    Shown shown(LostPages::secondOfThree().bytes());
    PDFThumbnailView strip;
    strip.resize(130, 600);
    strip.setPDFView(&shown.view);
    strip.show();
    QTRY_COMPARE(strip.accessibleDescription(), u"Could not be drawn: page 2."_s);
    QCOMPARE(strip.pageTip(1),
        u"Page 2 of 3\nThis page could not be drawn.\nThe file is damaged here."_s);
    QCOMPARE(strip.pageTip(2), u"Page 3 of 3"_s);
    shown.view.goToPage(1);
    QTRY_COMPARE(shown.view.currentPageText(),
        u"This page could not be drawn.\nThe file is damaged here."_s);
}

void TestPDFThumbnailView::comesAfterThePage()
{
    Shown shown(PdfBuilder().addDrawing("1 0 0 rg 0 0 612 792 re f").bytes());
    PDFThumbnailView strip;
    strip.setPDFView(&shown.view);
    strip.show();
    const auto engine = static_cast<pid_t>(shown.document->engineProcessIds().first());
    ::kill(engine, SIGSTOP);
    shown.view.setScaleFactor(3);
    QTRY_VERIFY(shown.view.isDrawing());
    ::kill(engine, SIGCONT);
    const auto paper = [&] {
        const QPoint middle = strip.pageRect(0).center();
        return strip.viewport()->grab().toImage().pixelColor(middle);
    };
    QTRY_VERIFY(!shown.view.isDrawing());
    QTRY_COMPARE(paper(), QColor(Qt::red));
    QCOMPARE(colourAt(shown.view, {200, 200}), QColor(Qt::red));
}

QTEST_MAIN(TestPDFThumbnailView)
#include "tst_PDFThumbnailView.moc"
