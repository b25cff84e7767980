// The part of PlainTextView that finds text.
#include "text/PlainTextView.h"

#include "TextFinder.h"
#include "text/FindBar.h"

namespace tarnwick {

namespace {

/// A longer selection is something to search in, not for.
constexpr qsizetype mostFindable = 1000;

} // namespace

void PlainTextView::setFindBarEnabled(bool enabled)
{
    theIsFindBarEnabled = enabled;
    if (!enabled) {
        theFinder->stop();
        closeFindBar();
    }
}

bool PlainTextView::isFindBarOpen() const
{
    return theFindBar && theFindBar->isVisibleTo(this);
}

void PlainTextView::openFindBar()
{
    if (!theFindBar) {
        theFindBar = new FindBar(this);
        theFindBar->hide();
        connect(theFindBar, &FindBar::wantedChanged, this, [this] {
            startSearch(selection().begin);
            seek(Seek::isNext, selection().begin);
        });
        connect(theFindBar, &FindBar::nextWanted, this, &PlainTextView::doFindNext);
        connect(theFindBar, &FindBar::previousWanted, this, &PlainTextView::doFindPrev);
        connect(theFindBar, &FindBar::closeWanted, this, &PlainTextView::closeFindBar);
    }
    if (isFindBarOpen())
        return;
    theFindBar->show();
    placeMargins();
    updateFindStatus();
    updateView();
    viewport()->update();
}

void PlainTextView::closeFindBar()
{
    if (!isFindBarOpen())
        return;
    const bool hadFocus = theFindBar->isAncestorOf(focusWidget() ? focusWidget() : this);
    theFindBar->hide();
    placeMargins();
    endSeek();
    updateView();
    viewport()->update();
    if (hadFocus)
        setFocus(Qt::OtherFocusReason);
}

void PlainTextView::placeFindBar()
{
    if (!isFindBarOpen())
        return;
    const QRect text = viewport()->geometry();
    theFindBar->setGeometry(
        text.x(), text.bottom() + 1, text.width(), theFindBar->sizeHint().height());
}

/// The selected text, when it can be searched for.
QString PlainTextView::findableSelection() const
{
    const TextRange range = selection();
    const bool isFindable
        = range.begin.line == range.end.line && range.end.unit - range.begin.unit <= mostFindable;
    return isFindable ? selectedText(mostFindable) : QString();
}

void PlainTextView::performFind()
{
    if (!theIsFindBarEnabled)
        return;
    openFindBar();
    const QString selected = findableSelection();
    if (!selected.isEmpty() && selected != theFindBar->text()) {
        theFindBar->setText(selected);
        startSearch(selection().begin);
        seek(Seek::isNext, selection().begin);
    } else if (!theFinder->isActive()) {
        startSearch(selection().begin);
    }
    theFindBar->edit();
}

/// @returns whether a search is under way; without a text to search for, asks for one instead.
bool PlainTextView::prepareToStep()
{
    if (!theIsFindBarEnabled)
        return false;
    if (!theFindBar || theFindBar->text().isEmpty()) {
        performFind();
        return false;
    }
    if (!theFinder->isActive())
        startSearch(selection().begin);
    return true;
}

void PlainTextView::doFindNext()
{
    if (prepareToStep())
        seek(Seek::isNext, selection() == theMatch ? theMatch.end : theCaret);
}

void PlainTextView::doFindPrev()
{
    if (prepareToStep())
        seek(Seek::isPrevious, selection().begin);
}

void PlainTextView::doFindSelection()
{
    const QString selected = findableSelection();
    if (!theIsFindBarEnabled || selected.isEmpty())
        return;
    openFindBar();
    theFindBar->setText(selected);
    startSearch(selection().begin);
    seek(Seek::isNext, selection().end);
}

void PlainTextView::startSearch(TextPosition from)
{
    endSeek();
    theMatch = {};
    if (!theFindBar || theFindBar->text().isEmpty())
        theFinder->stop();
    else
        theFinder->start(theStorage, theFindBar->text(), theFindBar->sensitivity(), from);
    updateFindStatus();
    updateView();
    viewport()->update();
}

void PlainTextView::seek(Seek direction, TextPosition from)
{
    theSeek = direction;
    theSeekFrom = from;
    resolveSeek();
    updateFindStatus();
}

void PlainTextView::endSeek()
{
    theSeek = Seek::isNothing;
}

/// Goes to the match that is waited for, once the finder knows it.
void PlainTextView::resolveSeek()
{
    if (theSeek == Seek::isNothing || !theFinder->isActive())
        return;
    const TextFinder::Answer answer
        = theSeek == Seek::isNext ? theFinder->next(theSeekFrom) : theFinder->previous(theSeekFrom);
    if (answer.kind == TextFinder::Answer::Kind::isUnknown)
        return;
    endSeek();
    isMatchWrapped = answer.isWrapped;
    theMatch = answer.match;
    if (answer.kind != TextFinder::Answer::Kind::isFound)
        return;
    setSelection(theMatch.begin, theMatch.end);
}

void PlainTextView::updateFindStatus()
{
    if (!isFindBarOpen())
        return;
    const auto say = [this](const QString& text, FindBar::Mood mood = FindBar::Mood::isNeutral) {
        theFindBar->setStatus(text, mood);
    };
    if (!theFinder->isActive())
        return say({});
    const qint64 count = theFinder->count();
    if (!theFinder->isComplete()) {
        const int percent = static_cast<int>(theFinder->progress() * 100);
        return say(count == 0 ? tr("Searching… %1 %").arg(percent)
                              : tr("%L1 found, searching… %2 %").arg(count).arg(percent));
    }
    if (count == 0)
        return say(tr("Not found"), FindBar::Mood::isNotFound);
    if (theMatch.isEmpty() || selection() != theMatch)
        return say(count == 1 ? tr("1 match") : tr("%L1 matches").arg(count));
    const QString place = tr("%L1 of %L2").arg(theFinder->number(theMatch)).arg(count);
    say(isMatchWrapped ? tr("%1, continued from the other end").arg(place) : place);
}

} // namespace tarnwick
