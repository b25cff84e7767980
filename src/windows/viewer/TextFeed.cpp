#include "TextFeed.h"

#include "CountLine.h"
#include "ProgressLine.h"
#include "Utf16.h"
#include "pdf/LossText.h"
#include "pdf/PDFDocumentText.h"
#include "text/PlainTextStorage.h"
#include "text/PlainTextView.h"

#include <QLocale>

namespace tarnwick {

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
    theCounting.abandon();
    isCountWanted = true;
    theTakenPages = 0;
    theTakenLength = 0;
    theShownLength = 0;
    if (theText->isWhole())
        return finish();
    for (int page = 0; page < theText->arrivedCount(); ++page)
        theTakenLength += theText->pageLength(page);
    theTakenPages = theText->arrivedCount();
    fetch();
    show();
}

void TextFeed::fetch()
{
    theText->fetch();
    emit lossesKnown({});
    if (!theText->isWhole())
        theProgressTimer.start(millisecondsBeforeProgress);
}

void TextFeed::takePage(int page)
{
    if (page != theTakenPages)
        return;
    ++theTakenPages;
    theTakenLength += theText->pageLength(page);
    // Showing a text reads it once; doing so each time that it has doubled stays cheap.
    if (theTakenLength > 2 * theShownLength)
        show();
}

void TextFeed::finish()
{
    theProgressTimer.stop();
    theLine->clear();
    if (!isCountWanted)
        return;
    isCountWanted = false;
    finishCount();
}

/// Shows, tells and counts what there is.
void TextFeed::finishCount()
{
    theCounting.abandon();
    const QString text = show();
    emit lossesKnown(theText->text().losses);
    count(text);
}

void TextFeed::stop(bool isCancelled)
{
    theProgressTimer.stop();
    finishCount();
    const QString reason
        = isCancelled ? tr("Reading the text was cancelled") : tr("The text could not be read");
    theLine->showMessage(tr("%1 at page %2 of %3.")
                             .arg(reason, QLocale().toString(theTakenPages + 1),
                                 QLocale().toString(theText->pageCount())),
        true);
}

/// @returns what is shown.
QString TextFeed::show()
{
    PDFPagesText text = theText->text();
    QString whole = text.string();
    theShownLength = whole.size();
    const auto storage = std::make_shared<PlainTextStorage>(whole);
    theView->growTextStorage(storage);
    QList<PlainTextView::Gap> gaps;
    for (const PDFPagesText::Gap& gap : text.gaps()) {
        // What is still on its way is not missing.
        if (!theText->isFetching() || gap.losses.ranges().constLast().loss != PDFLoss::isNotRead)
            gaps.append({storage->lineAt(gap.position),
                lossSentences(gap.losses, LossSubject::isText).join(u' ')});
    }
    theView->setGaps(gaps, lossSentences(text.losses, LossSubject::isText));
    return whole;
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
    theCounting.start(
        [text, locale](const std::stop_token& stop) { return counts(text, locale, stop); },
        [this](TextCounts result) { emit counted(result.words, result.characters); });
}

} // namespace tarnwick
