// The part of SourceViewController that leads to places in the source.
#include "inspector/SourceViewController.h"

#include "GoToBar.h"
#include "ObjectPanel.h"
#include "PaneLayout.h"
#include "PlacePanel.h"
#include "SourceInquiry.h"
#include "SourceNavigator.h"
#include "document/Document.h"
#include "document/FindingsStrip.h"
#include "frame/DocumentWindow.h"
#include "text/PlainTextView.h"

#include "ui_SourceWindow.h"

#include <QLabel>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

QString mistakeText(PlaceMistake mistake, const QString& text)
{
    switch (mistake) {
    case PlaceMistake::isEmpty:
        return SourceViewController::tr("Type where to go");
    case PlaceMistake::isTooLarge:
        return SourceViewController::tr("No file has a number that large");
    case PlaceMistake::isNoPlace:
        break;
    }
    return SourceViewController::tr("“%1” is no object, offset (@…) or page (p…)")
        .arg(text.trimmed());
}

} // namespace

void SourceViewController::connectNavigation()
{
    auto* const strip
        = new FindingsStrip(theOwner->findings(), FindingsStrip::Occasion::isAny, this);
    ui->outerLayout->insertWidget(0, strip);
    auto* const panel = new PlacePanel(this);
    ui->outerLayout->addWidget(panel);
    theInquiry = new SourceInquiry(theNavigator, panel, theOwner->findings(), this);
    connect(strip, &FindingsStrip::wanted, theInquiry, &SourceInquiry::showFindings);
    theGoToBar->hide();
    ui->outerLayout->addWidget(theGoToBar);
    connect(theGoToBar, &GoToBar::wanted, this, &SourceViewController::goToWanted);
    connect(theGoToBar, &GoToBar::closeWanted, this, [this] {
        theGoToBar->hide();
        theNavigator->pane(theNavigator->current()).view()->setFocus(Qt::OtherFocusReason);
    });
    connect(theNavigator, &SourceNavigator::said, this,
        [this](SourceNavigator::Pane in, const QString& sentence) {
            say(in == SourceNavigator::Pane::isFlattened ? theUpper : theLower, sentence);
        });
    connect(theNavigator, &SourceNavigator::bytesWanted, theOwner, &Document::showBytes);
    connect(
        theNavigator, &SourceNavigator::pageWanted, this, &SourceViewController::showWantedPage);
    connect(theOwner, &Document::opened, this, &SourceViewController::takeOpening);
    connect(theOwner, &Document::locked, this, &SourceViewController::takeOpening);
    connect(theOwner, &Document::refused, this, &SourceViewController::takeOpening);
    connect(theOwner, &Document::givenUp, this, &SourceViewController::takeOpening);
    connect(theOwner, &Document::sourceOfPageWanted, this,
        [this](const DocumentWindow* window, int page) {
            if (window == DocumentWindow::of(this))
                showSourceOfPage(page);
        });
    connect(theOwner, &Document::findingsWanted, this, [this](const DocumentWindow* window) {
        if (window == DocumentWindow::of(this))
            theInquiry->showFindings();
    });
    connect(this, &SourceViewController::filled, this, [this] {
        theInquiry->check();
        if (thePageToShow)
            showSourceOfPage(*thePageToShow);
    });
}

/// What the panes show now.
void SourceViewController::tellNavigator()
{
    theNavigator->setPane(SourceNavigator::Pane::isFlattened, theUpper.view, theUpper.source);
    theNavigator->setPane(SourceNavigator::Pane::isStored, theLower.view, theLower.source);
}

bool SourceViewController::validateCommand(const QString& command) const
{
    if (command == "followReference"_L1)
        return theNavigator->canFollow();
    if (command == "showUsers"_L1 || command == "showInOtherSource"_L1)
        return theNavigator->subjectNumber().has_value();
    if (command == "showFindings"_L1)
        return theInquiry->hasFindings();
    if (command == "goBack"_L1)
        return theNavigator->canGoBack();
    if (command == "goForward"_L1)
        return theNavigator->canGoForward();
    return true;
}

void SourceViewController::followReference()
{
    const QString failure = theNavigator->follow();
    say(theNavigator->current() == SourceNavigator::Pane::isFlattened ? theUpper : theLower,
        failure);
}

void SourceViewController::showInOtherSource()
{
    const SourceNavigator::Pane in = theNavigator->current();
    if (const std::optional<qint64> objNo = theNavigator->subjectNumber())
        say(in == SourceNavigator::Pane::isFlattened ? theUpper : theLower,
            theNavigator->showInOther(in, *objNo));
}

void SourceViewController::showUsers()
{
    if (const std::optional<qint64> objNo = theNavigator->subjectNumber())
        theInquiry->showUsers(theNavigator->current(), *objNo);
}

void SourceViewController::showFindings()
{
    theInquiry->showFindings();
}

void SourceViewController::goBack()
{
    theNavigator->goBack();
}

void SourceViewController::goForward()
{
    theNavigator->goForward();
}

bool SourceViewController::commandIsChecked(const QString& command) const
{
    if (command == "toggleObjectPanel"_L1)
        return !theObjectPanel->isHidden();
    if (command == "toggleObjectTable"_L1)
        return !ui->objectTabs->isHidden();
    if (command == "toggleSideBySide"_L1)
        return thePaneLayout->areSideBySide();
    return command == "toggleOnlyThisPane"_L1 && thePaneLayout->isOneAlone();
}

void SourceViewController::toggleSideBySide()
{
    thePaneLayout->setSideBySide(!thePaneLayout->areSideBySide());
}

void SourceViewController::toggleOnlyThisPane()
{
    thePaneLayout->setOneAlone(!thePaneLayout->isOneAlone());
}

void SourceViewController::focusNextPane()
{
    thePaneLayout->focusOther(1);
}

void SourceViewController::focusPreviousPane()
{
    thePaneLayout->focusOther(-1);
}

void SourceViewController::goToObject()
{
    theGoToBar->edit();
}

void SourceViewController::goToWanted(const QString& text)
{
    const auto query = parsePlaceQuery(text.toStdU16String());
    const auto* mistake = std::get_if<PlaceMistake>(&query);
    const QString failure
        = mistake ? mistakeText(*mistake, text) : theNavigator->goTo(std::get<PlaceQuery>(query));
    theGoToBar->setMistake(failure);
    if (failure.isEmpty())
        theGoToBar->hide();
}

void SourceViewController::showSourceOfPage(int page)
{
    if (isFilling()) {
        thePageToShow = page;
        return;
    }
    thePageToShow.reset();
    say(theLower, theNavigator->goToPage(page + 1, SourceNavigator::Pane::isStored));
}

/// Says a sentence beside a pane's caption, unless it is waiting for its text.
void SourceViewController::say(Pane& pane, const QString& sentence)
{
    if (!pane.work)
        setNote(pane, sentence.isEmpty() ? pane.lastingNote : sentence);
}

} // namespace tarnwick
