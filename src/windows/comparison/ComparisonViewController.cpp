#include "comparison/ComparisonViewController.h"

#include "ChangeListModel.h"
#include "ChangeWords.h"
#include "ComparedDocument.h"
#include "MergedTextStorage.h"
#include "compared/DocumentComparison.h"
#include "document/Document.h"
#include "frame/CommandRouter.h"
#include "frame/DocumentWindow.h"
#include "pages/PDFView.h"
#include "pdf/LossText.h"
#include "ui_ComparisonWindow.h"

#include <QKeyEvent>
#include <QLocale>

#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// Where the text stands in one of the two files, or in neither.
PageStretch stretchOf(int page)
{
    return page >= 0 ? PageStretch{page, 1} : PageStretch();
}

} // namespace

ComparisonViewController::ComparisonViewController(QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::ComparisonWindow>())
    , thePageChanges(new ChangeListModel(ChangeListModel::Subject::isPages, this))
    , theTextChanges(new ChangeListModel(ChangeListModel::Subject::isText, this))
{
    ui->setupUi(this);
    setFocusProxy(ui->changeList);
    ui->parts->setStretchFactor(0, 1);
    ui->parts->setStretchFactor(1, 3);
    ui->parts->setSizes({260, 840});
    setWindowTitle(tr("Comparison"));
    theStateTimer.setSingleShot(true);
    connect(&theStateTimer, &QTimer::timeout, this, &ComparisonViewController::showState);
    connectParts();
    showTab();
}

/// Counting 100,000 pages for each of them would hold the window.
void ComparisonViewController::showStateSoon()
{
    constexpr int pause = 100; // milliseconds
    if (!theStateTimer.isActive())
        theStateTimer.start(pause);
}

ComparisonViewController::~ComparisonViewController()
{
    ui->changeList->setModel(nullptr);
    ui->overlayView->setComparison(nullptr);
    ui->pagePane->disconnect(this);
    ui->pagePane->clear();
}

QListView* ComparisonViewController::changeList() const
{
    return ui->changeList;
}

PagePairPane* ComparisonViewController::pagePane() const
{
    return ui->pagePane;
}

PlainTextView* ComparisonViewController::textView() const
{
    return ui->textView;
}

void ComparisonViewController::connectParts()
{
    using This = ComparisonViewController;
    connect(ui->tabs, &QTabWidget::currentChanged, this, &This::showTab);
    connect(ui->nextButton, &QToolButton::clicked, this, &This::goToNextChange);
    connect(ui->previousButton, &QToolButton::clicked, this, &This::goToPreviousChange);
    connect(ui->swapButton, &QPushButton::clicked, this, &This::swapSides);
    connect(ui->stopButton, &QToolButton::clicked, this, [this] {
        if (theTextComparing && theTextComparing->isRunning())
            ui->wholeTextBox->setChecked(false);
        if (theComparison)
            theComparison->cancel();
    });
    connect(ui->sideBySideButton, &QToolButton::clicked, this, &This::showSideBySide);
    connect(ui->turnsButton, &QToolButton::clicked, this, &This::showByTurns);
    connect(ui->overlayButton, &QToolButton::clicked, this, &This::showOverlay);
    connect(ui->wholeTextBox, &QCheckBox::toggled, this, &This::toggleWholeText);
    connect(ui->pagePane, &PagePairPane::turnWanted, this, &This::showByTurns);
    connect(ui->pagePane, &PagePairPane::presentPairChanged, this, [this](int pair) {
        ui->overlayView->showPair(pair);
        if (theComparison)
            theComparison->prefer(pair);
    });
    for (ChangeListModel* const model : {thePageChanges, theTextChanges}) {
        connect(model, &QAbstractItemModel::rowsInserted, this, &This::showStateSoon);
        connect(model, &QAbstractItemModel::modelReset, this, &This::showStateSoon);
    }
}

// --- Opening -------------------------------------------------------------------------------------

void ComparisonViewController::compare(const ComparedFile& before, const ComparedFile& after)
{
    theFiles = {before, after};
    for (std::size_t side = 0; side < 2; ++side) {
        theDocuments[side] = std::make_unique<ComparedDocument>(theFiles[side], window(), this);
        connect(theDocuments[side].get(), &ComparedDocument::failed, this,
            [this, side](const QString& reason) { fail(side, reason); });
        connect(theDocuments[side].get(), &ComparedDocument::opened, this,
            &ComparisonViewController::begin);
    }
    setWindowTitle(
        tr("Comparison: %1 \u2013 %2").arg(theDocuments[0]->name(), theDocuments[1]->name()));
    showState();
    for (const auto& document : theDocuments)
        document->open();
}

void ComparisonViewController::fail(std::size_t side, const QString& reason)
{
    if (!theProblem.isEmpty())
        theProblem += u' ';
    theProblem
        += tr("\u201c%1\u201d cannot be compared. %2").arg(theDocuments[side]->name(), reason);
    showState();
}

void ComparisonViewController::begin()
{
    if (!theDocuments[0]->document() || !theDocuments[1]->document())
        return;
    restart();
}

/// Compares the documents, which are open, in the order in which they are now.
void ComparisonViewController::restart()
{
    const auto subject = [this](std::size_t side) -> DocumentComparison::Subject {
        const Document* const document = theDocuments[side]->document();
        return {document->thePDFDocument(), document->theData()};
    };
    ui->wholeTextBox->setChecked(false);
    ui->textView->clear();
    theTextPair = -1;
    auto comparison = std::make_unique<DocumentComparison>(subject(0), subject(1));
    ui->pagePane->setComparison(comparison.get(), theDocuments[0]->name(), theDocuments[1]->name());
    ui->overlayView->setComparison(comparison.get());
    thePageChanges->setComparison(comparison.get());
    theTextChanges->setComparison(comparison.get());
    theComparison = std::move(comparison);
    theTextComparing
        = std::make_unique<TextComparing>(subject(0).document, subject(1).document, nullptr);
    connect(theTextComparing.get(), &TextComparing::finished, this,
        &ComparisonViewController::showText);
    connect(theTextComparing.get(), &TextComparing::progressed, this, [this](int done, int total) {
        theTextProgress = tr("Reading page %1 of %2\u2026")
                              .arg(QLocale().toString(done), QLocale().toString(total));
        showStateSoon();
    });
    for (const auto signal : {&DocumentComparison::paired, &DocumentComparison::finished})
        connect(theComparison.get(), signal, this, &ComparisonViewController::showState);
    connect(theComparison.get(), &DocumentComparison::progressed, this,
        &ComparisonViewController::showStateSoon);
    setWindowTitle(
        tr("Comparison: %1 \u2013 %2").arg(theDocuments[0]->name(), theDocuments[1]->name()));
    theComparison->start();
    showState();
    updateCommands();
}

void ComparisonViewController::swapSides()
{
    if (!theComparison)
        return;
    std::swap(theDocuments[0], theDocuments[1]);
    std::swap(theFiles[0], theFiles[1]);
    restart();
}

// --- What is told --------------------------------------------------------------------------------

ChangeListModel* ComparisonViewController::presentModel() const
{
    return ui->tabs->currentWidget() == ui->textTab ? theTextChanges : thePageChanges;
}

void ComparisonViewController::showTab()
{
    if (ui->changeList->model() != presentModel()) {
        const int pair = ui->pagePane->presentPair();
        ui->changeList->setModel(presentModel());
        connect(ui->changeList->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &ComparisonViewController::showChange);
        if (presentModel() == theTextChanges && theTextPair < 0 && pair >= 0 && theComparison)
            showPairText(pair, -1);
    }
    showState();
}

void ComparisonViewController::showState()
{
    const bool isRunning = theComparison && theComparison->isRunning();
    const bool isReading = theTextComparing && theTextComparing->isRunning();
    QString text = theProblem;
    if (text.isEmpty() && !theComparison)
        text = tr("Opening\u2026");
    else if (text.isEmpty() && theComparison->pages().empty() && isRunning)
        text = tr("Looking for pages that have changed\u2026");
    else if (text.isEmpty())
        text = ChangeWords::summary(*theComparison)
            % (theComparison->wasCancelled() ? tr(". Stopped.") : u"."_s);
    if (isReading && isWholeWanted)
        text = theTextProgress;
    ui->stateLine->setText(text);
    ui->stopButton->setVisible(isRunning || (isReading && isWholeWanted));
    ui->swapButton->setEnabled(theComparison != nullptr);
    const bool isEmpty = presentModel()->rowCount() == 0;
    const bool isDone = theComparison && !isRunning && !theComparison->wasCancelled();
    ui->emptyNote->setVisible(isEmpty && isDone);
    ui->emptyNote->setText(presentModel() == theTextChanges ? tr("No words were added or removed.")
                                                            : tr("All pages look the same."));
    ui->nextButton->setEnabled(!isEmpty);
    ui->previousButton->setEnabled(!isEmpty);
    updateCommands();
}

void ComparisonViewController::updateCommands()
{
    const DocumentWindow* const window = DocumentWindow::of(this);
    if (window && window->router())
        window->router()->validateSoon();
}

bool ComparisonViewController::validateCommand(const QString& command) const
{
    if (command == "goToNextChange"_L1 || command == "goToPreviousChange"_L1)
        return presentModel()->rowCount() > 0;
    return theComparison != nullptr;
}

// --- Going to changes ----------------------------------------------------------------------------

int ComparisonViewController::selectedRow() const
{
    return ui->changeList->currentIndex().row();
}

void ComparisonViewController::step(int direction)
{
    const int count = presentModel()->rowCount();
    if (count == 0)
        return;
    const int row = selectedRow() < 0 ? (direction > 0 ? 0 : count - 1)
                                      : (selectedRow() + direction + count) % count;
    ui->changeList->setCurrentIndex(presentModel()->index(row));
}

void ComparisonViewController::goToNextChange()
{
    step(1);
}

void ComparisonViewController::goToPreviousChange()
{
    step(-1);
}

void ComparisonViewController::showChange()
{
    if (!theComparison || selectedRow() < 0)
        return;
    const ChangeListModel::Change change = presentModel()->change(selectedRow());
    if (presentModel() == thePageChanges) {
        ui->pagePane->showPair(change.pair);
    } else if (change.pair >= 0) {
        showPairText(change.pair, change.word);
    } else if (const auto storage
        = std::dynamic_pointer_cast<const MergedTextStorage>(ui->textView->textStorage())) {
        ui->textView->goTo(storage->changeRange(change.word));
    }
}

void ComparisonViewController::showPairText(int pair, int word)
{
    theWantedWord = word;
    isWholeWanted = false;
    if (pair == theTextPair) {
        if (const auto storage
            = std::dynamic_pointer_cast<const MergedTextStorage>(ui->textView->textStorage());
            storage && word >= 0)
            ui->textView->goTo(storage->changeRange(word));
        return;
    }
    theTextPair = pair;
    const PagePair& pages = theComparison->pages()[static_cast<std::size_t>(pair)].pair;
    ui->textNote->setText(ChangeWords::pages(pages.before, pages.after));
    theTextComparing->start(stretchOf(pages.before), stretchOf(pages.after));
}

void ComparisonViewController::toggleWholeText(bool on)
{
    ui->textNote->clear();
    ui->textView->clear();
    theTextPair = -1;
    isWholeWanted = on && theComparison;
    if (isWholeWanted)
        theTextComparing->start({0, theComparison->document(ComparedSide::isBefore)->pageCount()},
            {0, theComparison->document(ComparedSide::isAfter)->pageCount()});
    else if (theTextComparing)
        theTextComparing->cancel();
    if (!on)
        theTextChanges->setWholeText(nullptr);
    showState();
}

void ComparisonViewController::showText(const std::shared_ptr<const ComparedText>& text)
{
    const auto storage = std::make_shared<MergedTextStorage>(text);
    ui->textView->setTextStorage(storage);
    QStringList notes;
    if (isWholeWanted)
        theTextChanges->setWholeText(text);
    else
        notes << ui->textNote->text();
    if (text->isRewritten)
        notes << tr("Rewritten: the texts have too little in common to be told apart by words.");
    for (const PDFLosses& losses : text->losses)
        notes << lossSentences(losses, LossSubject::isText);
    ui->textNote->setText(notes.join(u' '));
    if (theWantedWord >= 0 && theWantedWord < std::ssize(text->merged.changes) && !isWholeWanted)
        ui->textView->goTo(storage->changeRange(theWantedWord));
    showState();
}

// --- Ways to show pages --------------------------------------------------------------------------

void ComparisonViewController::showSideBySide()
{
    ui->pageViews->setCurrentWidget(ui->pagePane);
    ui->pagePane->setMode(PagePairPane::Mode::isSideBySide);
    showMode();
}

void ComparisonViewController::showByTurns()
{
    const bool isShown = ui->pageViews->currentWidget() == ui->pagePane
        && ui->pagePane->mode() == PagePairPane::Mode::isByTurns;
    ui->pageViews->setCurrentWidget(ui->pagePane);
    if (isShown)
        ui->pagePane->turn();
    else
        ui->pagePane->setMode(PagePairPane::Mode::isByTurns);
    showMode();
}

void ComparisonViewController::showOverlay()
{
    ui->pageViews->setCurrentWidget(ui->overlayView);
    showMode();
}

void ComparisonViewController::showMode()
{
    const bool isOverlay = ui->pageViews->currentWidget() == ui->overlayView;
    const bool isByTurns = ui->pagePane->mode() == PagePairPane::Mode::isByTurns;
    ui->overlayButton->setChecked(isOverlay);
    ui->turnsButton->setChecked(!isOverlay && isByTurns);
    ui->sideBySideButton->setChecked(!isOverlay && !isByTurns);
    ui->modeNote->setText(isOverlay ? tr("Only earlier: red. Only later: blue-green.")
            : !isByTurns            ? QString()
            : ui->pagePane->shownSide() == ComparedSide::isBefore
            ? tr("Earlier document. Space: later one")
            : tr("Later document. Space: earlier one"));
}

void ComparisonViewController::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && !ui->sideBySideButton->isChecked())
        showSideBySide();
    else
        QWidget::keyPressEvent(event);
}

} // namespace tarnwick
