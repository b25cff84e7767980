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
    thePanel->showRows(tr("Users of object %1: searching…").arg(objNo), {});
    thePanel->edit();
    struct Found
    {
        ObjectUses uses;
        QList<PlaceRow> rows;
    };
    const std::shared_ptr<const SourceText> source = theNavigator->pane(in).source();
    const auto task
        = [this, source, objNo](const std::stop_token& stop, const Work::Report& report) {
              const pdfObjectCatalog& catalog = source->theCatalog();
              bool areFirst = true;
              ObjectUses uses = ObjectUsers(catalog).find(
                  objNo,
                  [&](const ObjectUses& soFar, std::size_t bytesDone) {
                      report(bytesDone, catalog.bytes().size());
                      if (!std::exchange(areFirst, false))
                          return;
                      report.deliver([this, objNo, uses = soFar, rows = userRows(catalog, soFar)] {
                          takeUses(objNo, uses, rows);
                      });
                  },
                  stop);
              QList<PlaceRow> rows = userRows(catalog, uses);
              return Found{std::move(uses), std::move(rows)};
          };
    theSearch.start(
        task, [this, objNo](const Found& found) { takeUses(objNo, found.uses, found.rows); },
        [this, objNo](quint64 done, quint64 total) {
            thePanel->setTitle(tr("Users of object %1: searching… %2 %")
                                   .arg(objNo)
                                   .arg(total > 0 ? 100 * done / total : 0));
        });
}

void SourceInquiry::takeUses(qint64 objNo, const ObjectUses& uses, QList<PlaceRow> rows)
{
    const QString count = counted(uses.count);
    const QString title = uses.isComplete
        ? tr("Users of object %1: %2").arg(objNo).arg(count)
        : tr("Users of object %1: %2 so far").arg(objNo).arg(count);
    const bool isCut = uses.count > uses.uses.size();
    thePanel->showRows(title, std::move(rows),
        isCut ? tr("The first %1 are shown").arg(counted(uses.uses.size()))
              : tr("References within object streams are not seen"));
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
