#include "plain/PlainPDFViewController.h"

#include "document/Document.h"
#include "pages/PDFView.h"
#include "printing/PagePrinter.h"
#include "ui_PlainPDFWindow.h"

#include <QShowEvent>

using namespace Qt::StringLiterals;

namespace tarnwick {

const QString PlainPDFViewController::titlePrefix = u"\u2757\uFE0F"_s;

PlainPDFViewController::PlainPDFViewController(Document* document, QWidget* parent)
    : QWidget(parent)
    , theDocument(document)
{
    Ui::PlainPDFWindow ui;
    ui.setupUi(this);
    setThePDFView(ui.thePDFView);
}

void PlainPDFViewController::setThePDFView(PDFView* view)
{
    theOutlet = view;
    setFocusProxy(view);
    view->setPrintDelegate([this](PDFView* printed) { PDFViewPerformPrint(printed); });
}

void PlainPDFViewController::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous())
        setUp();
}

void PlainPDFViewController::setUp()
{
    theOutlet->setDocument(theDocument->thePDFDocument(), theDocument->documentText());
    theOutlet->setAutoScales(true);
    setWindowTitle(titlePrefix + theDocument->displayName());
}

void PlainPDFViewController::autoZoom()
{
    theOutlet->setAutoScales(true);
}

void PlainPDFViewController::PDFViewPerformPrint(PDFView* view)
{
    PagePrinter::printAsSheet(view->document(), theDocument->displayName(), window());
}

} // namespace tarnwick
