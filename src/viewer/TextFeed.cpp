#include "viewer/TextFeed.h"

#include "platform/PDFDocumentText.h"
#include "viewer/CountLine.h"
#include "viewer/ProgressLine.h"
#include "viewer/Utf16.h"
#include "views/PlainTextStorage.h"
#include "views/PlainTextView.h"

#include <QLocale>
#include <QScrollBar>

namespace {

// Counted within a few hundredths of a second.
constexpr qsizetype longestTextCountedAtOnce = 200'000;
// Texts that are there sooner need no word about it.
constexpr int millisecondsBeforeProgress = 500;
constexpr int millisecondsBetweenProgress = 100;

TextCounts counts(const QString& text, const std::string& locale, const std::stop_token& stop = {})
{
    return countText(unitsOf(text), locale, stop);
}

} // namespace

TextFeed::TextFeed(PDFDocumentText* text, PlainTextView* view, ProgressLine* line, QObject* parent)
    : QObject(parent)
    , theText(text)
    , theView(view)
    , theLine(line)
{
    connect(text, &PDFDocumentText::pageArrived, this, &TextFeed::takePage);
    connect(text, &PDFDocumentText::completed, this, &TextFeed::finish);
    connect(text, &PDFDocumentText::stopped, this,
        [this](PDFFailure failure) { stop(failure == PDFFailure::isCancelled); });
    connect(line, &ProgressLine::cancelRequested, text, &PDFDocumentText::cancel);
    connect(line, &ProgressLine::retryRequested, this, &TextFeed::fetch);
    connect(&theProgressTimer, &QTimer::timeout, this, &TextFeed::showProgress);
}

void TextFeed::fill()
{
    theCounting.cancel();
    isCountWanted = true;
    theBeginning.clear();
    theTakenPages = 0;
    theShownLength = 0;
    if (theText->isWhole())
        return finish();
    for (int page = 0; page < theText->arrivedCount(); ++page)
        takePage(page);
    show(theBeginning);
    fetch();
}

void TextFeed::fetch()
{
    theText->fetch();
    if (!theText->isWhole())
        theProgressTimer.start(millisecondsBeforeProgress);
}

void TextFeed::takePage(int page)
{
    if (page != theTakenPages)
        return;
    ++theTakenPages;
    if (!theBeginning.isEmpty() && !theBeginning.endsWith(QLatin1Char('\n')))
        theBeginning += QLatin1Char('\n');
    theBeginning += theText->pageString(page);
    // Showing a text reads it once; doing so each time that it has doubled stays cheap.
    if (theBeginning.size() > 2 * theShownLength)
        show(theBeginning);
}

void TextFeed::finish()
{
    theProgressTimer.stop();
    theLine->clear();
    theBeginning.clear();
    if (!isCountWanted)
        return;
    isCountWanted = false;
    const QString text = theText->string();
    show(text);
    count(text);
}

void TextFeed::stop(bool isCancelled)
{
    theProgressTimer.stop();
    show(theBeginning);
    const QString reason
        = isCancelled ? tr("Reading the text was cancelled") : tr("The text could not be read");
    theLine->showMessage(tr("%1 at page %2 of %3.")
                             .arg(reason, QLocale().toString(theTakenPages + 1),
                                 QLocale().toString(theText->pageCount())),
        true);
}

void TextFeed::show(const QString& text)
{
    const TextRange selection = theView->selection();
    const int top = theView->verticalScrollBar()->value();
    theShownLength = text.size();
    theView->setTextStorage(std::make_shared<PlainTextStorage>(text));
    theView->setSelection(selection.begin, selection.end);
    theView->verticalScrollBar()->setValue(top);
}

void TextFeed::showProgress()
{
    theProgressTimer.setInterval(millisecondsBetweenProgress);
    const int total = theText->pageCount();
    theLine->showProgress(
        tr("Text: page %1 of %2").arg(QLocale().toString(theTakenPages), QLocale().toString(total)),
        theTakenPages, total);
}

void TextFeed::count(const QString& text)
{
    const std::string locale = QLocale().name().toStdString();
    if (text.size() <= longestTextCountedAtOnce) {
        const TextCounts result = counts(text, locale);
        emit counted(result.words, result.characters);
        return;
    }
    theCounting.start([this, text, locale](const std::stop_token& stop,
                          const BackgroundJob::Report&) -> BackgroundJob::Delivery {
        const TextCounts result = counts(text, locale, stop);
        return [this, result] { emit counted(result.words, result.characters); };
    });
}
