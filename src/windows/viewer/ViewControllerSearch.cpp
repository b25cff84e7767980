// The controller's search commands.

#include "viewer/ViewController.h"

#include "DocumentSearch.h"
#include "SearchField.h"
#include "SearchStepper.h"
#include "pages/PDFView.h"
#include "pdf/LossText.h"
#include "pdf/PDFDocumentText.h"
#include "work/ReleaseElsewhere.h"

#include "ui_ViewController.h"

#include <QLocale>
#include <QMenu>

#include <limits>
#include <utility>

namespace tarnwick {

void ViewController::connectSearch()
{
    connect(theSearch, &DocumentSearch::found, this, &ViewController::takeMatches);
    connect(theSearch, &DocumentSearch::progressed, this, &ViewController::showSearchProgress);
    connect(
        ui->searchProgress, &ProgressLine::cancelRequested, this, &ViewController::cancelSearch);
    connect(theText, &PDFDocumentText::pageArrived, this, [this](int page) {
        if (theSearch->isWaitingForText())
            showSearchProgress(page + 1, theText->pageCount());
    });
}

/// The Escape key of the search field.
void ViewController::leaveSearch()
{
    if (isSearching())
        cancelSearch();
    else
        theOutlets.pdfView->setFocus(Qt::OtherFocusReason);
}

bool ViewController::isSearching() const
{
    return theSearch->isRunning();
}

void ViewController::makeSearchMenu()
{
    auto menu = std::make_unique<QMenu>(tr("Recents"));
    const auto add = [&menu](const QString& title, SearchField::MenuTag tag) {
        menu->addAction(title)->setData(int(tag));
    };
    add(tr("Recent Searches"), SearchField::isRecentsTitle);
    add(tr("Item"), SearchField::isRecentsItem);
    menu->addSeparator();
    add(tr("Clear Menu"), SearchField::isClearRecents);
    add(tr("No Recent Search"), SearchField::isNoRecents);
    theOutlets.searchField->setSearchMenuTemplate(menu.get());
    theSearchMenu = std::move(menu);
}

void ViewController::doSearchAction()
{
    const QString text = theOutlets.searchFieldCell->stringValue();
    if (text.isEmpty())
        return;
    theOutlets.searchField->rememberSearch(text);
    theOutlets.searchField->setMatchText({});
    const SearchOptions options = searchOptions(
        theOutlets.caseSensitiveButton->isChecked(), theOutlets.literalButton->isChecked());
    theSearch->start(text, options);
    if (isSearching()) {
        forgetMatches();
        showSearchProgress(0, 0);
    }
    updateControls();
}

/// The matches of another text are not to be stepped through while these are looked for.
void ViewController::forgetMatches()
{
    releaseElsewhere(std::exchange(theMatches, {}));
    theOutlets.pdfView->setHighlights({});
}

void ViewController::takeMatches(const QList<PDFSelection>& matches, const PDFLosses& losses)
{
    releaseElsewhere(std::exchange(theMatches, matches));
    theOutlets.pdfView->setHighlights(matches);
    ui->searchProgress->clear();
    if (!losses.isEmpty())
        ui->searchProgress->showMessage(
            (losses.hasPartial() ? tr("Not searched in full: %1.") : tr("Not searched: %1."))
                .arg(pageNumbers(losses.ranges(), 2)),
            false, lossSentences(losses, LossSubject::isSearch).join(u'\n'));
    if (matches.isEmpty())
        theOutlets.searchField->setMatchText(tr("No matches"));
    else
        showMatch(0);
    updateControls();
}

void ViewController::cancelSearch()
{
    theSearch->cancel();
    ui->searchProgress->clear();
    updateControls();
}

void ViewController::showSearchProgress(int done, int total)
{
    ui->searchProgress->showProgress(
        theSearch->isWaitingForText() ? tr("Waiting for the text…") : tr("Searching…"), done,
        total);
}

void ViewController::doSearchStepAction()
{
    SearchStepper* stepper = theOutlets.searchStepper;
    const std::optional<std::int64_t> index = ringIndex(stepper->integerValue(), theMatches.size());
    if (!index)
        return;
    stepper->setIntegerValue(static_cast<int>(*index));
    showMatch(static_cast<qsizetype>(*index));
}

void ViewController::doFindNext()
{
    stepBy(1);
}

void ViewController::doFindPrev()
{
    stepBy(-1);
}

void ViewController::stepBy(int step)
{
    if (theMatches.isEmpty())
        return;
    SearchStepper* stepper = theOutlets.searchStepper;
    const bool isAtItsEnd = step > 0 && stepper->integerValue() == std::numeric_limits<int>::max();
    stepper->setIntegerValue(isAtItsEnd ? stepper->integerValue() : stepper->integerValue() + step);
    doSearchStepAction();
}

void ViewController::showMatch(qsizetype index)
{
    theOutlets.pdfView->setCurrentSelection(theMatches.at(index), true);
    theOutlets.pdfView->scrollSelectionToVisible();
    theOutlets.searchField->setMatchText(
        tr("%1 of %2").arg(QLocale().toString(index + 1), QLocale().toString(theMatches.size())));
}

void ViewController::doFindSelection()
{
    const PDFSelection& selection = theOutlets.pdfView->currentSelection();
    if (selection.isEmpty())
        return;
    theOutlets.searchFieldCell->setStringValue(theText->string(selection));
    doSearchAction();
}

void ViewController::performFind()
{
    theOutlets.searchField->setFocus(Qt::ShortcutFocusReason);
    theOutlets.searchField->selectAll();
}

} // namespace tarnwick
