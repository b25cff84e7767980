#include "viewer/ViewController.h"

#include "CountLine.h"
#include "DocumentSearch.h"
#include "FactLine.h"
#include "GlyphIcon.h"
#include "OutlineModel.h"
#include "PageControls.h"
#include "TextFeed.h"
#include "frame/CommandRouter.h"
#include "frame/DocumentWindow.h"
#include "frame/ViewFlags.h"
#include "pages/PDFThumbnailView.h"
#include "pages/PDFView.h"
#include "pdf/FailureText.h"
#include "pdf/PDFDocument.h"
#include "pdf/PDFDocumentText.h"
#include "printing/PagePrinter.h"
#include "settings/StoredValues.h"
#include "text/PlainTextView.h"
#include "work/ReleaseElsewhere.h"

#include "ui_ViewController.h"

#include <QHash>
#include <QMenu>
#include <QSettings>
#include <QShowEvent>

#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

const QString stripWidthKey = u"viewerStripWidth"_s;
const QString textWidthKey = u"viewerTextWidth"_s;
constexpr int firstStripWidth = 164;
constexpr int narrowestStripWidth = 100;
constexpr int firstTextWidth = 300;
constexpr double thumbnailGrowth = 1.1;

int storedStripWidth()
{
    return qMax(StoredValues::length(stripWidthKey, firstStripWidth), narrowestStripWidth);
}

QString outlineNote(const PDFOutlineRequest& request)
{
    if (!request.succeeded())
        return failureSentence(ViewController::tr("The outline could not be read"), request);
    switch (request.outline().loss) {
    case PDFLoss::isNone:
        return {};
    case PDFLoss::isCut:
        return ViewController::tr("The outline has more entries than are shown here.");
    case PDFLoss::isDamagedInPart:
        return ViewController::tr("Parts of the outline are too damaged to be read.");
    default:
        return ViewController::tr("The outline is too damaged to be read.");
    }
}

} // namespace

ViewController::ViewController(
    PDFDocument* document, PDFDocumentText* text, const ViewFlags& flags, QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::ViewController>())
    , theDocument(document)
    , theText(text)
    , theFlags(flags)
    , theSearch(new DocumentSearch(text, this))
    , theOutline(new OutlineModel(this))
{
    ui->setupUi(this);
    ui->sideBarButton->setIcon(GlyphIcon::icon(GlyphIcon::Shape::isSideBar));
    ui->outlineView->setModel(theOutline);
    ui->textProgress->setMessageWraps(true);
    theTextFeed = new TextFeed(text, ui->theTextView, ui->textProgress, this);
    thePageControls = new PageControls(ui->thePDFView,
        {ui->pageField, ui->pageCountLabel, ui->zoomMenu, ui->previousPageButton,
            ui->nextPageButton, ui->zoomInButton, ui->zoomOutButton},
        this);
    connectOutlets();
    connectControls();
    connectSearch();
    connectSideBar();
    viewDidLoad();
}

ViewController::~ViewController()
{
    // The strip looks at the page view, which may be gone before it.
    if (theAttachedStrip)
        theAttachedStrip->setPDFView(nullptr);
    releaseElsewhere(std::exchange(theMatches, {}));
}

void ViewController::connectOutlets()
{
    setTheSplitView(ui->theSplitView);
    setThePDFView(ui->thePDFView);
    setTheThumbnailView(ui->theThumbnailView);
    setTheTextScroller(ui->theTextView);
    setTheTextView(ui->theTextView);
    setSearchField(ui->searchField);
    setSearchFieldCell(ui->searchField);
    setCountText(ui->countText);
    setCaseSensitiveButton(ui->caseSensitiveButton);
    setLiteralButton(ui->literalButton);
    setSearchStepper(ui->searchStepper);
    setMarkPageMenu(ui->markPageMenu);
}

template<class Control> void ViewController::exchange(Control*& outlet, Control* control)
{
    if (outlet)
        outlet->disconnect(this);
    outlet = control;
}

void ViewController::setTheSplitView(QSplitter* view)
{
    exchange(theOutlets.splitView, view);
    connect(view, &QSplitter::splitterMoved, this, &ViewController::updateControls);
}

void ViewController::setThePDFView(PDFView* view)
{
    exchange(theOutlets.pdfView, view);
    connect(view, &PDFView::currentPageChanged, this, &ViewController::updateControls);
    connect(view, &PDFView::contextMenuOpening, this, &ViewController::extendPageMenu);
    connect(view, &PDFView::documentChanged, this, &ViewController::updateControls);
    connect(view, &PDFView::selectionChanged, this, &ViewController::updateControls);
    connect(view, &PDFView::historyChanged, this, &ViewController::updateControls);
    thePageControls->setView(view);
    PagePrinter::serve(view);
    setFocusProxy(view); // a reader's keys are the pages'
}

void ViewController::setTheTextView(PlainTextView* view)
{
    theOutlets.textView = view;
    theTextFeed->setView(view);
    view->setFindBarEnabled(false); // searching is the field's, and goes over the pages
}

void ViewController::setSearchField(SearchField* field)
{
    exchange(theOutlets.searchField, field);
    connect(field, &SearchField::searchRequested, this, &ViewController::doSearchAction);
    connect(field, &SearchField::cancelRequested, this, &ViewController::leaveSearch);
}

void ViewController::setSearchStepper(SearchStepper* stepper)
{
    exchange(theOutlets.searchStepper, stepper);
    connect(stepper, &SearchStepper::stepped, this, &ViewController::doSearchStepAction);
}

void ViewController::setMarkPageMenu(QComboBox* menu)
{
    exchange(theOutlets.markPageMenu, menu);
    connect(menu, &QComboBox::activated, this, &ViewController::doChangePage);
}

void ViewController::connectControls()
{
    connect(ui->markButton, &QToolButton::clicked, this, &ViewController::setPageMark);
    connect(ui->backMarkButton, &QToolButton::clicked, this, &ViewController::goBackMark);
    connect(ui->forwardMarkButton, &QToolButton::clicked, this, &ViewController::goForwardMark);
    connect(theDocument, &PDFDocument::pagesMeasured, this, [this] {
        thePageControls->refresh();
        renameMarks();
    });
    connect(theTextFeed, &TextFeed::counted, this, [this](qint64 words, qint64 characters) {
        theOutlets.countText->setText(QString::fromStdString(countLine(words, characters)));
    });
    connect(theTextFeed, &TextFeed::lossesKnown, this,
        [this](const PDFLosses& losses) { ui->lossLine->setLosses(losses, LossSubject::isText); });
}

void ViewController::connectSideBar()
{
    connect(ui->sideBarButton, &QToolButton::clicked, this, &ViewController::toggleSideBar);
    const auto goToEntry = [this](const QModelIndex& index) {
        const PDFOutlineEntry& entry = theOutline->entry(index);
        if (entry.page >= 0)
            theOutlets.pdfView->goToPoint(entry.page, entry.point);
    };
    connect(ui->outlineView, &QTreeView::clicked, this, goToEntry);
    connect(ui->outlineView, &QTreeView::activated, this, goToEntry);
    PDFOutlineRequest* request = theDocument->requestOutline(this);
    connect(request, &PDFOutlineRequest::finished, this, [this, request] {
        theOutline->setEntries(request->outline().entries);
        request->deleteLater();
        showOutline(*request);
    });
    ui->sideTabs->removeTab(ui->sideTabs->indexOf(ui->outlineTab));
}

/// A document without an outline has no tab for one; an outline that cannot be read has.
void ViewController::showOutline(const PDFOutlineRequest& request)
{
    const QString note = outlineNote(request);
    if (theOutline->rowCount() == 0 && note.isEmpty())
        return;
    ui->outlineNote->setText(note);
    ui->outlineNote->setVisible(!note.isEmpty());
    ui->sideTabs->addTab(ui->outlineTab, tr("Outline"));
    if (theOutline->rowCount() == 1)
        ui->outlineView->expand(theOutline->index(0, 0));
    updateControls();
}

void ViewController::viewDidLoad()
{
    const bool showsThumbnails = theFlags.showThumbnail();
    restoreSizes(showsThumbnails);
    if (showsThumbnails)
        return;
    theOutlets.thumbnailView->setPDFView(nullptr);
    ui->sideTabs->removeTab(ui->sideTabs->indexOf(ui->pagesTab));
}

void ViewController::viewDidAppear()
{
    // A view that shows the document already keeps its place in it.
    if (theOutlets.pdfView->document() != theDocument)
        theOutlets.pdfView->setDocument(theDocument, theText);
    theOutlets.pdfView->setAutoScales(true);
    if (theFlags.showThumbnail())
        attachThumbnails();
    theTextFeed->fill();
    makeSearchMenu();
    rebuildMarkMenu();
    thePageControls->refresh();
    updateControls();
}

void ViewController::attachThumbnails()
{
    if (theAttachedStrip && theAttachedStrip != theOutlets.thumbnailView)
        theAttachedStrip->setPDFView(nullptr);
    theAttachedStrip = theOutlets.thumbnailView;
    theAttachedStrip->setPDFView(theOutlets.pdfView);
    theAttachedStrip->setThumbnailSize(theAttachedStrip->thumbnailSize() * thumbnailGrowth);
    if (ui->sideTabs->indexOf(ui->pagesTab) < 0)
        ui->sideTabs->insertTab(0, ui->pagesTab, tr("Pages"));
    ui->sideTabs->setCurrentWidget(ui->pagesTab);
}

void ViewController::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    // Spontaneous ones tell of a window that has been minimised or on another desktop.
    if (!event->spontaneous())
        viewDidAppear();
}

void ViewController::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous())
        saveSizes();
}

void ViewController::restoreSizes(bool isStripOpen)
{
    const int strip = isStripOpen ? storedStripWidth() : 0;
    const int text = StoredValues::length(textWidthKey, firstTextWidth);
    QSplitter* splitter = theOutlets.splitView;
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setStretchFactor(2, 0);
    splitter->setSizes({strip, qMax(width() - strip - text, 1), text});
}

void ViewController::saveSizes() const
{
    const QList<int> sizes = theOutlets.splitView->sizes();
    QSettings settings;
    // A closed strip opens again in its width.
    if (sizes.value(0) > 0)
        settings.setValue(stripWidthKey, sizes.value(0));
    if (sizes.size() > 2)
        settings.setValue(textWidthKey, sizes.at(2));
}

bool ViewController::isSideBarOpen() const
{
    return theOutlets.splitView->sizes().value(0) > 0;
}

void ViewController::toggleSideBar(bool open)
{
    QList<int> sizes = theOutlets.splitView->sizes();
    if (sizes.size() < 2 || open == (sizes.at(0) > 0))
        return;
    if (!open && isVisible())
        saveSizes();
    const int width = open ? storedStripWidth() : 0;
    sizes[1] = qMax(sizes.at(1) + sizes.at(0) - width, 1);
    sizes[0] = width;
    theOutlets.splitView->setSizes(sizes);
    updateControls();
}

void ViewController::setFact(const QString& command, const QString& text)
{
    ui->factLine->setFact(command, text);
}

void ViewController::updateControls()
{
    const auto enable = [this](QWidget* widget, const QString& command) {
        widget->setEnabled(validateCommand(command));
    };
    enable(ui->markButton, u"setPageMark"_s);
    enable(ui->backMarkButton, u"goBackMark"_s);
    enable(ui->forwardMarkButton, u"goForwardMark"_s);
    enable(theOutlets.searchStepper, u"doFindNext"_s);
    ui->sideBarButton->setChecked(isSideBarOpen());
    ui->sideBarButton->setEnabled(isSideBarOpen() || ui->sideTabs->count() > 0);
    const DocumentWindow* window = DocumentWindow::of(this);
    if (window && window->router())
        window->router()->validateSoon();
}

bool ViewController::validateCommand(const QString& command) const
{
    const PDFView* view = theOutlets.pdfView;
    const int mark = theOutlets.markPageMenu->currentIndex();
    const QHash<QString, bool> conditions = {
        {u"doSearchStepAction"_s, !theMatches.isEmpty()},
        {u"doFindNext"_s, !theMatches.isEmpty()},
        {u"doFindPrev"_s, !theMatches.isEmpty()},
        {u"doFindSelection"_s, !view->currentSelection().isEmpty()},
        {u"cancelSearch"_s, isSearching()},
        {u"setPageMark"_s, view->currentPage() >= 0},
        {u"showPageSource"_s, view->currentPage() >= 0},
        {u"doChangePage"_s, !theMarks.pages().empty()},
        {u"goBackMark"_s, theMarks.before(mark).has_value()},
        {u"goForwardMark"_s, theMarks.after(mark).has_value()},
    };
    return conditions.value(command, true);
}

} // namespace tarnwick
