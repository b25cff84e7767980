// The controller's commands for pages: what the page view does, and the marked pages.

#include "viewer/ViewController.h"

#include "PageControls.h"
#include "pages/PDFThumbnailView.h"
#include "pages/PDFView.h"
#include "pdf/PDFDocument.h"

#include <QComboBox>

void ViewController::setPageMark()
{
    if (theMarks.mark(theOutlets.pdfView->currentPage()))
        rebuildMarkMenu();
    updateControls();
}

void ViewController::rebuildMarkMenu()
{
    QComboBox* menu = theOutlets.markPageMenu;
    menu->clear();
    if (theMarks.pages().empty())
        menu->addItem(tr("No marked page"));
    for (const int page : theMarks.pages())
        menu->addItem(markTitle(page));
    menu->setCurrentIndex(0);
    theOutlets.thumbnailView->setMarkedPages({theMarks.pages().begin(), theMarks.pages().end()});
}

QString ViewController::markTitle(int page) const
{
    const QString label = theDocument->pageLabel(page);
    return label.isEmpty() ? QStringLiteral("-1") : label;
}

/// Labels of large documents arrive late; the pop-up's selection stays.
void ViewController::renameMarks()
{
    int item = 0;
    for (const int page : theMarks.pages())
        theOutlets.markPageMenu->setItemText(item++, markTitle(page));
}

void ViewController::doChangePage()
{
    goToMark(theOutlets.markPageMenu->currentIndex());
}

void ViewController::goBackMark()
{
    goToMark(theMarks.before(theOutlets.markPageMenu->currentIndex()));
}

void ViewController::goForwardMark()
{
    goToMark(theMarks.after(theOutlets.markPageMenu->currentIndex()));
}

void ViewController::goToMark(std::optional<int> entry)
{
    const std::optional<int> page = theMarks.page(entry.value_or(-1));
    if (!page)
        return;
    theOutlets.markPageMenu->setCurrentIndex(*entry);
    theOutlets.pdfView->goToPage(*page);
    updateControls();
}

void ViewController::goToPageDialog()
{
    thePageControls->editPage();
}

void ViewController::autoZoom()
{
    theOutlets.pdfView->setAutoScales(true);
}

void ViewController::zoomIn()
{
    theOutlets.pdfView->zoomIn();
}

void ViewController::zoomOut()
{
    theOutlets.pdfView->zoomOut();
}

void ViewController::fitPage()
{
    theOutlets.pdfView->fitPage();
}

void ViewController::fitWidth()
{
    theOutlets.pdfView->fitWidth();
}

void ViewController::actualSize()
{
    theOutlets.pdfView->actualSize();
}

void ViewController::rotateClockwise()
{
    theOutlets.pdfView->rotateClockwise();
}

void ViewController::rotateCounterclockwise()
{
    theOutlets.pdfView->rotateCounterclockwise();
}

void ViewController::goToFirstPage()
{
    theOutlets.pdfView->goToFirstPage();
}

void ViewController::goToLastPage()
{
    theOutlets.pdfView->goToLastPage();
}

void ViewController::goToNextPage()
{
    theOutlets.pdfView->goToNextPage();
}

void ViewController::goToPreviousPage()
{
    theOutlets.pdfView->goToPreviousPage();
}

void ViewController::goBack()
{
    theOutlets.pdfView->goBack();
}

void ViewController::goForward()
{
    theOutlets.pdfView->goForward();
}

void ViewController::copy()
{
    theOutlets.pdfView->copy();
}

void ViewController::selectAll()
{
    theOutlets.pdfView->selectAll();
}

void ViewController::print()
{
    theOutlets.pdfView->print();
}
