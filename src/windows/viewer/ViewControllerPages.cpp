// The controller's commands for pages: the marked ones, the page field and the fitting of pages.

#include "viewer/ViewController.h"

#include "PageControls.h"
#include "document/DocumentFindings.h"
#include "document/FindingsStrip.h"
#include "pages/PDFThumbnailView.h"
#include "pages/PDFView.h"
#include "pdf/PDFDocument.h"
#include "pdf/PDFDocumentText.h"

#include "ui_ViewController.h"

#include <QComboBox>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace tarnwick {

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
    return label.isEmpty() ? u"-1"_s : label;
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

void ViewController::showPageSource()
{
    emit sourceOfPageWanted(theOutlets.pdfView->currentPage());
}

/// Adds what can be done with a page to the page view's context menu.
void ViewController::extendPageMenu(QMenu* menu, int page)
{
    if (page < 0)
        return;
    menu->addSeparator();
    menu->addAction(
        tr("Show &Source of Page"), this, [this, page] { emit sourceOfPageWanted(page); });
}

void ViewController::autoZoom()
{
    theOutlets.pdfView->setAutoScales(true);
}

/// The text comes first: the user waits for it.
void ViewController::setFindings(DocumentFindings* findings)
{
    auto* const strip = new FindingsStrip(findings, FindingsStrip::Occasion::isGrave, this);
    strip->layout()->setContentsMargins(8, 2, 8, 2);
    ui->mainLayout->insertWidget(ui->mainLayout->indexOf(ui->barLine), strip);
    connect(strip, &FindingsStrip::wanted, this, &ViewController::findingsWanted);
    const auto want = [this, findings] { findings->want(this); };
    connect(theText, &PDFDocumentText::completed, this, want);
    connect(theText, &PDFDocumentText::stopped, this, want);
    if (theText->isWhole())
        want();
}

} // namespace tarnwick
