#include "document/Document.h"
#include "platform/PDFView.h"
#include "views/PlainPDFViewController.h"

#include "support/PdfBuilder.h"

#include <QPrintDialog>
#include <QSignalSpy>
#include <QTest>

class TestPlainPDFViewController : public QObject
{
    Q_OBJECT

private slots:
    void namesItsWindow_data();
    void namesItsWindow();
    void setsUpOnEveryShow();
    void asksBeforePrinting();

private:
    std::unique_ptr<Document> opened();
    WindowRegistry<Document> theRegistry;
};

std::unique_ptr<Document> TestPlainPDFViewController::opened()
{
    auto document = std::make_unique<Document>(&theRegistry);
    QSignalSpy opening(document.get(), &FrameDocument::opened);
    document->readFromData(*FileBytes::copy(PdfBuilder().addPage("text").addPage().bytes()));
    return opening.wait(30'000) ? std::move(document) : nullptr;
}

void TestPlainPDFViewController::namesItsWindow_data()
{
    QTest::addColumn<QUrl>("file");
    QTest::addColumn<QString>("title");
    QTest::newRow("a file") << QUrl::fromLocalFile(QStringLiteral("/a folder/report.pdf"))
                            << QStringLiteral("\u2757\uFE0Freport.pdf");
    QTest::newRow("no file") << QUrl() << QStringLiteral("\u2757\uFE0FUntitled");
}

void TestPlainPDFViewController::namesItsWindow()
{
    QFETCH(QUrl, file);
    const std::unique_ptr<Document> document = opened();
    QVERIFY(document);
    document->setFileURL(file);
    PlainPDFViewController controller(document.get());
    controller.show();
    QTEST(controller.windowTitle(), "title");
}

void TestPlainPDFViewController::setsUpOnEveryShow()
{
    const std::unique_ptr<Document> document = opened();
    QVERIFY(document);
    PlainPDFViewController controller(document.get());
    QVERIFY(!controller.thePDFView()->document());
    controller.show();
    QCOMPARE(controller.thePDFView()->document(), document->thePDFDocument());
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
    const std::unique_ptr<Document> document = opened();
    QVERIFY(document);
    PlainPDFViewController controller(document.get());
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
