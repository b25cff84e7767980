#include "BytesSearch.h"

#include "BytesWords.h"
#include "text/FindBar.h"
#include "text/HexView.h"

#include <QPointer>

namespace tarnwick {

namespace {

/// A longer selection is something to search in, not for.
constexpr std::size_t mostFindable = 1000;

std::u16string_view unitsOf(const QString& text)
{
    return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())};
}

QString digitsOf(std::string_view bytes)
{
    return QString::fromLatin1(
        QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())).toHex(' ').toUpper());
}

} // namespace

BytesSearch::BytesSearch(FindBar* bar, HexView* view, QObject* parent)
    : QObject(parent)
    , theBar(bar)
    , theView(view)
{
    theBar->setBox(
        tr("He&xadecimal"), tr("Find bytes that are given by their digits, as DE AD ?? EF"));
    showPrompt();
    theBar->hide();
    theView->setMatchFinder([search = QPointer(this)](HexView::Span shown) {
        QList<HexView::Span> matches;
        if (!search || search->theBar->isHidden())
            return matches;
        const ByteMatches& found = search->theFinder.matches();
        for (const std::size_t at : found.within(shown.begin, shown.end)) {
            // Those that adjoin are shown as one: a zero may be found a thousand times in a window.
            if (matches.isEmpty() || matches.constLast().end != at)
                matches.append({at, at});
            matches.last().end = at + found.pattern().size();
        }
        return matches;
    });
    connect(theBar, &FindBar::wantedChanged, this, [this] {
        showPrompt();
        start();
        seek(Seek::isNext, theView->selectedBytes().begin);
    });
    connect(theBar, &FindBar::nextWanted, this, &BytesSearch::findNext);
    connect(theBar, &FindBar::previousWanted, this, &BytesSearch::findPrevious);
    connect(theBar, &FindBar::closeWanted, this, &BytesSearch::stopOrClose);
    connect(theView, &HexView::selectionChanged, this, &BytesSearch::showStatus);
    connect(&theFinder, &ByteFinder::advanced, this, [this] {
        resolveSeek();
        showStatus();
        theView->updateMatches();
    });
}

bool BytesSearch::canFindSelection() const
{
    const HexView::Span span = theView->selectedBytes();
    return span.begin < span.end && span.end - span.begin <= mostFindable;
}

void BytesSearch::open()
{
    theBar->show();
    theView->updateMatches();
    const bool isMatch = theMatch && *theMatch == theView->selectedBytes().begin;
    if (canFindSelection() && !isMatch) {
        takeSelection();
        start();
        seek(Seek::isNext, theView->selectedBytes().begin);
    }
    theBar->edit();
    showStatus();
}

/// Has the bar look for what is selected, in the way that shows all of it.
void BytesSearch::takeSelection()
{
    const HexView::Span span = theView->selectedBytes();
    const std::string_view bytes
        = theView->hexStorage().bytes().view.substr(span.begin, span.end - span.begin);
    const std::optional<QString> text = theView->selectionAsText();
    // A field has one line.
    const bool isText = text && !text->contains(u'\n') && !text->contains(u'\r');
    theBar->setBoxChecked(!isText);
    theBar->setText(isText ? *text : digitsOf(bytes));
    showPrompt();
}

void BytesSearch::findSelection()
{
    if (!canFindSelection())
        return;
    theBar->show();
    takeSelection();
    start();
    seek(Seek::isNext, theView->selectedBytes().end);
}

void BytesSearch::start()
{
    theSeek = Seek::isNothing;
    theMatch.reset();
    BytePattern pattern;
    theProblem.clear();
    if (theBar->isBoxChecked()) {
        const QString digits = theBar->text();
        const BytePattern::Reading reading = BytePattern::ofHex(unitsOf(digits));
        theProblem = BytesWords::problem(reading);
        pattern = reading.pattern;
    } else {
        pattern = BytePattern::ofBytes(theBar->text().toUtf8().toStdString());
    }
    theFinder.start(pattern.isEmpty() ? SharedBytes() : theView->hexStorage().bytes(), pattern);
    showStatus();
    theView->updateMatches();
}

void BytesSearch::seek(Seek direction, std::size_t from)
{
    theSeek = direction;
    theSeekFrom = from;
    resolveSeek();
    showStatus();
}

/// @returns whether a search is under way or done; without anything to look for, asks for it.
bool BytesSearch::prepareToStep()
{
    if (theBar->text().isEmpty()) {
        open();
        return false;
    }
    const bool isUnfinished = !theFinder.isRunning() && !theFinder.matches().isComplete();
    if (theFinder.matches().pattern().isEmpty() || isUnfinished)
        start();
    return true;
}

void BytesSearch::findNext()
{
    if (!prepareToStep())
        return;
    // Behind a match as a whole: matches do not overlap.
    seek(Seek::isNext, theView->selectedBytes().end);
}

void BytesSearch::findPrevious()
{
    if (prepareToStep())
        seek(Seek::isPrevious, theView->selectedBytes().begin);
}

/// Goes to the match that is waited for, once it is known.
void BytesSearch::resolveSeek()
{
    const ByteMatches& matches = theFinder.matches();
    if (theSeek == Seek::isNothing || matches.pattern().isEmpty())
        return;
    const ByteMatches::Answer answer
        = theSeek == Seek::isNext ? matches.next(theSeekFrom) : matches.previous(theSeekFrom);
    if (answer.kind == ByteMatches::Answer::Kind::isUnknown)
        return;
    theSeek = Seek::isNothing;
    if (answer.kind != ByteMatches::Answer::Kind::isFound)
        return;
    theMatch = answer.offset;
    isMatchWrapped = answer.isWrapped;
    theView->selectBytes({answer.offset, answer.offset + matches.pattern().size()});
}

void BytesSearch::stopOrClose()
{
    if (theFinder.isRunning()) {
        theFinder.stop();
        theSeek = Seek::isNothing;
        showStatus();
        return;
    }
    theBar->hide();
    theView->updateMatches();
    theView->setFocus(Qt::OtherFocusReason);
}

void BytesSearch::showPrompt()
{
    theBar->setPrompt(theBar->isBoxChecked() ? tr("Find bytes, as DE AD ?? EF")
                                             : tr("Find text, case-sensitive"));
}

void BytesSearch::showStatus()
{
    if (theBar->isHidden())
        return;
    const bool isNeutral = theFinder.isRunning() || theFinder.matches().pattern().isEmpty()
        || theFinder.matches().count() > 0 || !theFinder.matches().isComplete();
    theBar->setStatus(theProblem.isEmpty() ? foundStatus() : theProblem,
        isNeutral && theProblem.isEmpty() ? FindBar::Mood::isNeutral : FindBar::Mood::isNotFound);
}

QString BytesSearch::foundStatus() const
{
    const ByteMatches& matches = theFinder.matches();
    if (matches.pattern().isEmpty())
        return {};
    const auto count = static_cast<qulonglong>(matches.count());
    const int percent = theFinder.percent();
    if (theFinder.isRunning()) {
        return count == 0 ? tr("Searching… %1 % (Esc stops)").arg(percent)
                          : tr("%L1 found, searching… %2 % (Esc stops)").arg(count).arg(percent);
    }
    if (!matches.isComplete())
        return tr("Stopped at %1 %, %L2 found so far").arg(percent).arg(count);
    if (count == 0)
        return theBar->isBoxChecked() ? tr("Not found")
                                      : tr("Not found (upper and lower case differ)");
    const HexView::Span shown = theView->selectedBytes();
    if (!theMatch || shown != HexView::Span{*theMatch, *theMatch + matches.pattern().size()})
        return count == 1 ? tr("1 match") : tr("%L1 matches").arg(count);
    const QString place = tr("%L1 of %L2").arg(qulonglong{matches.number(*theMatch)}).arg(count);
    return isMatchWrapped ? tr("%1, continued from the other end").arg(place) : place;
}

} // namespace tarnwick
