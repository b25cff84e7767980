#include "inspector/SourceViewController.h"

#include "GoToBar.h"
#include "ObjectPanel.h"
#include "PaneLayout.h"
#include "SourceNavigator.h"
#include "SourceSummary.h"
#include "document/Document.h"
#include "pdf/FailureText.h"
#include "pdf/LossText.h"
#include "text/PlainTextStorage.h"
#include "text/PlainTextView.h"

#include "ui_SourceWindow.h"

#include <QShowEvent>
#include <QTimer>

#include <chrono>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

using namespace std::chrono_literals;

/// A note that comes and goes within a glance only makes the window flicker.
constexpr auto notePatience = 300ms;

/// What the flattened document lacks, shortly in the first line; empty when it is whole.
QString lossNote(const PDFWrittenFile& file)
{
    if (file.isWhole())
        return {};
    const QString pages = pageNumbers(file.losses.ranges(), 2);
    const QString brief = pages.isEmpty() ? SourceViewController::tr("Incomplete")
                                          : SourceViewController::tr("Incomplete: %1").arg(pages);
    const QStringList sentences
        = missingSentences(file.losses, file.lostObjects, LossSubject::isFile);
    return brief % u'\n' % sentences.join(u'\n');
}

SharedBytes shared(const FileBytes& bytes)
{
    return {bytes.view(), bytes.owner()};
}

void setUpListing(PlainTextView* view)
{
    view->useFixedPitchFont();
    view->setWrapping(false);
}

/// Why a view has no text, as no part of it.
void tellEmpty(PlainTextView* view, const QString& reason)
{
    view->setGaps({{0, reason}}, {reason});
}

void setText(PlainTextView* view, const QString& text)
{
    view->setTextStorage(std::make_shared<const PlainTextStorage>(text));
}

} // namespace

SourceViewController::SourceViewController(
    Document* document, const ViewFlags* flags, QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::SourceWindow>())
    , theOwner(document)
    , theFlags(flags)
    , theNavigator(new SourceNavigator(PlaceHistory::of(*document), this))
    , theGoToBar(new GoToBar(this))
    , theObjectPanel(new ObjectPanel(this))
{
    ui->setupUi(this);
    thePaneLayout = new PaneLayout(ui->panes);
    thePaneLayout->setPanes({{ui->upperPane, ui->upperTextView}, {ui->lowerPane, ui->lowerTextView},
        {ui->bottomPane, ui->bottomTextView}});
    connectOutlets();
    connectNavigation();
    connectObjectPanel();
    connectTable();
}

SourceViewController::~SourceViewController() = default;

void SourceViewController::connectOutlets()
{
    theUpper = {nullptr, ui->upperNote, ui->upperCancel, {}, {}, {}};
    theLower = {nullptr, ui->lowerNote, ui->lowerCancel, {}, {}, {}};
    setUpperTextView(ui->upperTextView);
    setUpperTextScroller(ui->upperTextView);
    setLowerTextView(ui->lowerTextView);
    setLowerTextScroller(ui->lowerTextView);
    setBottomTextView(ui->bottomTextView);
    setBottomTextScroller(ui->bottomTextView);
    for (Pane* pane : {&theUpper, &theLower}) {
        pane->note->hide();
        pane->cancel->hide();
        connect(pane->cancel, &QToolButton::clicked, this, [this, pane] { cancelWork(*pane); });
    }
    thePaneLayout->restore();
}

void SourceViewController::setUpperTextView(PlainTextView* view)
{
    theUpper.view = view;
    thePaneLayout->setView(0, view);
    setUpListing(view);
    view->setGutter(PlainTextView::Gutter::isLinesAndOffsets);
    theNavigator->setPane(SourceNavigator::Pane::isFlattened, view, nullptr);
    connect(view, &PlainTextView::selectionChanged, this, &SourceViewController::followCaret,
        Qt::UniqueConnection);
}

void SourceViewController::setLowerTextView(PlainTextView* view)
{
    theLower.view = view;
    thePaneLayout->setView(1, view);
    setUpListing(view);
    view->setGutter(PlainTextView::Gutter::isLinesAndOffsets);
    theNavigator->setPane(SourceNavigator::Pane::isStored, view, nullptr);
    connect(view, &PlainTextView::selectionChanged, this, &SourceViewController::selectRowOfCaret,
        Qt::UniqueConnection);
    connect(view, &PlainTextView::selectionChanged, this, &SourceViewController::followCaret,
        Qt::UniqueConnection);
    setFocusProxy(view);
}

void SourceViewController::setBottomTextView(PlainTextView* view)
{
    theBottomView = view;
    thePaneLayout->setView(2, view);
    setUpListing(view);
}

void SourceViewController::setUpperText(const QString& text)
{
    setText(theUpper.view, text);
}

void SourceViewController::setLowerText(const QString& text)
{
    setText(theLower.view, text);
}

void SourceViewController::setBottomText(const QString& text)
{
    setText(theBottomView, text);
}

bool SourceViewController::isFilling() const
{
    return theUpper.work || theLower.work;
}

/// Coming back from an icon is no new showing: the user wants to find what was there.
void SourceViewController::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous())
        fillPanes();
}

void SourceViewController::hideEvent(QHideEvent* event)
{
    thePaneLayout->save();
    saveTable();
    saveObjectPanel();
    QWidget::hideEvent(event);
}

void SourceViewController::fillPanes()
{
    for (Pane* pane : {&theUpper, &theLower})
        endWork(*pane, QString());
    theFlatBytes = {};
    theRenderedDocument = theOwner->thePDFDocument();
    setWindowTitle(u"\u203C\uFE0F"_s + theOwner->displayName());
    if (!isOpened() && !theOwner->isSourceEarly()) {
        setBottomText(QString::fromUtf8(noDocumentText));
        emit filled();
        return;
    }
    chooseContent();
    if (isOpened())
        fillFromEngine();
    else
        tellOpening();
    startScan(theLower, shared(theOwner->theData()));
    tellTable();
    tellObjectPanel();
}

void SourceViewController::chooseContent()
{
    if (theFlags->showRawSource())
        theContent = SourceContent::isRaw;
    else // of what may be no PDF file the list alone would show nothing
        theContent = theFlags->showSummarySource() || !isOpened() ? SourceContent::isListing
                                                                  : SourceContent::isObjectList;
}

void SourceViewController::fillFromEngine()
{
    writeSummary();
    fillUpper();
}

void SourceViewController::fillUpper()
{
    PDFFileRequest* request = theRenderedDocument->requestFlat(this);
    beginWork(theUpper, request, tr("Writing the flattened PDF\u2026"));
    connect(request, &PDFRequest::progressed, this, [this](int done, int total) {
        if (total > 0)
            theUpper.note->setText(
                tr("Writing the flattened PDF\u2026 %1 %").arg(100LL * done / total));
    });
    connect(request, &PDFRequest::finished, this, [this, request] { takeFlattened(request); });
}

void SourceViewController::takeFlattened(PDFFileRequest* request)
{
    if (request->succeeded()) {
        const PDFWrittenFile& file = request->file();
        theFlatBytes = file.bytes;
        theNavigator->setNumbers(file.numbers);
        startScan(theUpper, shared(file.bytes), lossNote(file));
        return;
    }
    emptyUpper();
    finishPane(theUpper, failureText(request->failure(), FailedTask::isFlattening));
}

/// Without a flattened PDF there is nothing to list; an undecorated text stays what it was.
void SourceViewController::emptyUpper()
{
    if (theContent == SourceContent::isRaw)
        return;
    theUpper.view->setTextStorage(std::make_shared<const PlainTextStorage>());
    theNavigator->setPane(SourceNavigator::Pane::isFlattened, theUpper.view, nullptr);
}

/// @param lossNote what is missing from the bytes; stays beside the pane.
void SourceViewController::startScan(Pane& pane, const SharedBytes& bytes, const QString& lossNote)
{
    auto* scan = new SourceScan(bytes, theContent, this);
    beginWork(pane, scan, tr("Reading the source\u2026"));
    connect(scan, &SourceScan::finished, this, [this, &pane, scan, lossNote] {
        if (!scan->storage()) {
            finishPane(pane, tr("There is not enough memory to show this"));
            return;
        }
        pane.source = scan->source();
        pane.view->setTextStorage(scan->storage());
        if (pane.source && pane.source->theString().empty())
            tellEmpty(pane.view, tr("The file is empty."));
        tellNavigator();
        finishPane(pane, lossNote);
    });
}

void SourceViewController::beginWork(Pane& pane, QObject* work, const QString& note)
{
    endWork(pane, QString());
    pane.work = work;
    pane.note->setText(note);
    QTimer::singleShot(notePatience, work, [&pane, work] {
        if (pane.work != work) // it has ended and only waits to be deleted
            return;
        pane.note->show();
        pane.cancel->show();
    });
}

/// @param note what stays to be said, if anything.
void SourceViewController::endWork(Pane& pane, const QString& note)
{
    if (pane.work) {
        pane.work->disconnect(this);
        pane.work->deleteLater();
        if (auto* request = qobject_cast<PDFRequest*>(pane.work.data()))
            request->cancel();
        pane.work.clear();
    }
    pane.lastingNote = note;
    setNote(pane, note);
    pane.cancel->hide();
}

/// The first line stands there; all of it is in the tool tip.
void SourceViewController::setNote(Pane& pane, const QString& note)
{
    pane.note->setText(note.section(u'\n', 0, 0));
    pane.note->setToolTip(note);
    pane.note->setAccessibleName(note);
    pane.note->setVisible(!note.isEmpty());
}

void SourceViewController::cancelWork(Pane& pane)
{
    if (&pane == &theUpper && !isOpened())
        return theOwner->giveUp();
    if (&pane == &theUpper)
        emptyUpper();
    finishPane(pane, failureText(PDFFailure::isCancelled, FailedTask::isFlattening));
}

void SourceViewController::finishPane(Pane& pane, const QString& note)
{
    endWork(pane, note);
    writeSummary();
    tellTable();
    tellObjectSources();
    followCaret();
    if (!isFilling())
        emit filled();
}

void SourceViewController::writeSummary()
{
    const auto summaryOf = [this](const std::shared_ptr<const SourceText>& source) {
        return source && theContent != SourceContent::isRaw
            ? std::optional(source->theCatalog().makeSummary())
            : std::nullopt;
    };
    if (isOpened())
        setBottomText(QString::fromStdString(summaryText(
            theRenderedDocument->facts(), summaryOf(theUpper.source), summaryOf(theLower.source))));
}

} // namespace tarnwick
