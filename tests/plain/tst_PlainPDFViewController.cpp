#include "document/Document.h"
#include "pages/PDFView.h"
#include "plain/PlainPDFViewController.h"

#include "support/PdfBuilder.h"

#include <QPrintDialog>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

class TestPlainPDFViewController : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void namesItsWindow();
    void setsUpOnEveryShow();
    void asksBeforePrinting();

private:
    WindowRegistry<Document> theRegistry;
    std::unique_ptr<Document> theDocument;
};

void TestPlainPDFViewController::init()
{
    theDocument = std::make_unique<Document>(&theRegistry);
    QSignalSpy opening(theDocument.get(), &FrameDocument::opened);
    theDocument->readFromData(*FileBytes::copy(PdfBuilder().addPage("text").addPage().bytes()));
    QVERIFY(opening.wait(30'000));
}

void TestPlainPDFViewController::namesItsWindow()
{
    const auto title = [this](const QUrl& file) {
        theDocument->setFileURL(file);
        PlainPDFViewController controller(theDocument.get());
        controller.show();
        return controller.windowTitle();
    };
    const QUrl report = QUrl::fromLocalFile(u"/a folder/report.pdf"_s);
    QCOMPARE(title(report), u"\u2757\uFE0Freport.pdf"_s);
    QCOMPARE(title(QUrl()), u"\u2757\uFE0FUntitled"_s);
}

void TestPlainPDFViewController::setsUpOnEveryShow()
{
    PlainPDFViewController controller(theDocument.get());
    QVERIFY(!controller.thePDFView()->document());
    controller.show();
    QCOMPARE(controller.thePDFView()->document(), theDocument->thePDFDocument());
    QVERIFY(controller.thePDFView()->autoScales());
    controller.thePDFView()->zoomIn();
    QVERIFY(!controller.thePDFView()->autoScales());
    controller.autoZoom();
    QVERIFY(controller.thePDFView()->autoScales());
    controller.thePDFView()->zoomIn();
    controller.hide();
    controller.show();
    QVERIFY(controller.thePDFView()->autoScales());
}

void TestPlainPDFViewController::asksBeforePrinting()
{
    PlainPDFViewController controller(theDocument.get());
    controller.show();
    // Whoever takes the command, view or controller, one sheet of this window asks.
    controller.thePDFView()->print();
    auto* const dialog = controller.findChild<QPrintDialog*>();
    QVERIFY(dialog);
    QCOMPARE(dialog->windowModality(), Qt::WindowModal);
    QCOMPARE(dialog->maxPage(), 2);
    dialog->reject();
}

QTEST_MAIN(TestPlainPDFViewController)
#include "tst_PlainPDFViewController.moc"
