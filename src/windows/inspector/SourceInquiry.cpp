#include "SourceInquiry.h"

#include "FindingsStrip.h"
#include "PlacePanel.h"
#include "SourceFacts.h"

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
    SourceNavigator* navigator, PlacePanel* panel, FindingsStrip* strip, QObject* parent)
    : QObject(parent)
    , theNavigator(navigator)
    , thePanel(panel)
    , theStrip(strip)
    , theSearch(panel)
{
    thePanel->hide();
    connect(thePanel, &PlacePanel::chosen, this, &SourceInquiry::go);
    connect(thePanel, &PlacePanel::closeWanted, this, &SourceInquiry::close);
    connect(theStrip, &FindingsStrip::wanted, this, &SourceInquiry::showFindings);
    connect(theNavigator, &SourceNavigator::usersWanted, this, &SourceInquiry::showUsers);
}

// --- Users ---------------------------------------------------------------------------------------

void SourceInquiry::showUsers(SourceNavigator::Pane in, qint64 objNo)
{
    thePane = in;
    theSearch.start(theNavigator->pane(in).source(), objNo);
    thePanel->edit();
}

// --- Findings ------------------------------------------------------------------------------------

void SourceInquiry::check()
{
    const PaneSource& stored = theNavigator->pane(SourceNavigator::Pane::isStored);
    if (!stored.hasObjects() || stored.source() == theChecked)
        return;
    theChecked = stored.source();
    theFindings.clear();
    theStrip->setText({});
    struct Found
    {
        Findings findings;
        QList<PlaceRow> rows;
    };
    theCheck.start(
        [source = theChecked](const std::stop_token& stop) {
            Findings findings = findFacts(source->theCatalog(), stop);
            QList<PlaceRow> rows = findingRows(source->theCatalog(), findings);
            return Found{std::move(findings), std::move(rows)};
        },
        [this](const Found& found) { takeFindings(found.findings, found.rows); });
}

void SourceInquiry::takeFindings(const Findings& findings, QList<PlaceRow> rows)
{
    theFindings = std::move(rows);
    theFindingCount = countOf(findings);
    if (theFindings.isEmpty())
        return;
    const QString first = theFindings.constFirst().text;
    theStrip->setText(theFindingCount == 1
            ? tr("1 finding: %1").arg(first)
            : tr("%1 findings: %2 …").arg(counted(theFindingCount), first));
}

void SourceInquiry::showFindings()
{
    theSearch.abandon();
    thePane = SourceNavigator::Pane::isStored;
    const bool isCut = theFindingCount > static_cast<qulonglong>(theFindings.size());
    thePanel->showRows(tr("Findings in the stored file: %1").arg(counted(theFindingCount)),
        theFindings, isCut ? tr("The first of each kind are shown") : QString());
    thePanel->edit();
}

// --- The list ------------------------------------------------------------------------------------

void SourceInquiry::go(qint64 offset)
{
    const QString failure = theNavigator->goToOffset(static_cast<std::size_t>(offset), thePane);
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
