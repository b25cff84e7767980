#include "SourceInquiry.h"

#include "PlacePanel.h"
#include "SourceFacts.h"
#include "document/DocumentFindings.h"

#include <QLocale>

#include <utility>

namespace tarnwick {

namespace {

QString counted(qulonglong number)
{
    return QLocale().toString(number);
}

} // namespace

SourceInquiry::SourceInquiry(
    SourceNavigator* navigator, PlacePanel* panel, DocumentFindings* findings, QObject* parent)
    : QObject(parent)
    , theNavigator(navigator)
    , thePanel(panel)
    , theFindings(findings)
    , theSearch(panel)
{
    thePanel->hide();
    connect(thePanel, &PlacePanel::chosen, this, &SourceInquiry::go);
    connect(thePanel, &PlacePanel::closeWanted, this, &SourceInquiry::close);
    connect(theFindings, &DocumentFindings::changed, this, [this] {
        if (theFindingsShow && thePanel->isVisible())
            listFindings();
    });
    connect(theNavigator, &SourceNavigator::usersWanted, this, &SourceInquiry::showUsers);
}

// --- Users ---------------------------------------------------------------------------------------

void SourceInquiry::showUsers(SourceNavigator::Pane in, qint64 objNo)
{
    thePane = in;
    theFindingsShow = false;
    theSearch.start(theNavigator->pane(in).source(), objNo);
    thePanel->edit();
}

// --- Findings ------------------------------------------------------------------------------------

void SourceInquiry::check()
{
    const PaneSource& stored = theNavigator->pane(SourceNavigator::Pane::isStored);
    theFindings->want(this, stored.hasObjects() ? stored.source() : nullptr);
}

bool SourceInquiry::hasFindings() const
{
    return theFindings->findings() && theFindings->findings()->count() > 0;
}

void SourceInquiry::showFindings()
{
    theSearch.abandon();
    thePane = SourceNavigator::Pane::isStored;
    theFindingsShow = true;
    listFindings();
    thePanel->edit();
}

void SourceInquiry::listFindings()
{
    const FileFindings* const all = theFindings->findings();
    if (!all) {
        thePanel->showRows(tr("Findings in the stored file: looking…"), {});
        return;
    }
    const bool isCut = all->count() > all->list.size();
    thePanel->showRows(tr("Findings in the stored file: %1").arg(counted(all->count())),
        findingRows(*all), isCut ? tr("The first of each kind are shown") : QString());
}

// --- The list ------------------------------------------------------------------------------------

void SourceInquiry::go(const PlaceRow& row)
{
    QString failure = tr("This has no place in the file");
    if (row.offset)
        failure = theNavigator->goToOffset(*row.offset, thePane);
    else if (row.page)
        failure = theNavigator->goToPage(*row.page + 1, thePane);
    if (!failure.isEmpty())
        emit theNavigator->said(thePane, failure);
}

void SourceInquiry::close()
{
    theSearch.abandon();
    thePanel->hide();
    theNavigator->pane(theNavigator->current()).view()->setFocus(Qt::OtherFocusReason);
}

} // namespace tarnwick
