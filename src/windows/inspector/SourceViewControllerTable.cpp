// The part of SourceViewController that has the table of objects beside the panes.
#include "inspector/SourceViewController.h"

#include "ObjectTable.h"
#include "SourceNavigator.h"

#include "ui_SourceWindow.h"

#include <QScopedValueRollback>
#include <QSettings>

namespace tarnwick {

namespace {

constexpr auto storedPane = SourceNavigator::Pane::isStored;

const QString workbenchKey = QStringLiteral("SourceWindow/workbench");
const QString tableKey = QStringLiteral("SourceWindow/objectTable");

} // namespace

void SourceViewController::connectTable()
{
    ObjectTable* const table = ui->objectTablePanel;
    ui->workbench->setStretchFactor(0, 1);
    ui->workbench->setStretchFactor(1, 0);
    if (!ui->workbench->restoreState(QSettings().value(workbenchKey).toByteArray()))
        ui->workbench->setSizes({480, 420});
    showTable(QSettings().value(tableKey, false).toBool());
    const auto lead = [this, table](std::size_t object, bool goes) {
        const QScopedValueRollback leading(theTableLeads, true);
        const pdfObject target = table->source()->theCatalog().object(object);
        say(theLower,
            goes ? theNavigator->show(target, storedPane)
                 : theNavigator->lookAt(target, storedPane));
    };
    connect(table, &ObjectTable::chosen, this, [lead](std::size_t object) { lead(object, false); });
    connect(table, &ObjectTable::wanted, this, [lead](std::size_t object) { lead(object, true); });
}

void SourceViewController::saveTable() const
{
    QSettings().setValue(workbenchKey, ui->workbench->saveState());
}

void SourceViewController::showTable(bool shows)
{
    ui->objectTablePanel->setVisible(shows);
    ui->sidePanels->setVisible(shows);
}

bool SourceViewController::commandIsChecked(const QString& command) const
{
    return command == QLatin1String("toggleObjectTable") && !ui->objectTablePanel->isHidden();
}

void SourceViewController::toggleObjectTable()
{
    const bool shows = ui->objectTablePanel->isHidden();
    if (!shows && ui->objectTablePanel->isAncestorOf(focusWidget()))
        theLower.view->setFocus(Qt::OtherFocusReason);
    showTable(shows);
    QSettings().setValue(tableKey, shows);
    selectRowOfCaret();
}

void SourceViewController::filterObjects()
{
    if (ui->objectTablePanel->isHidden())
        toggleObjectTable();
    ui->objectTablePanel->editFilter();
}

/// What the lower pane shows now, or why it has no objects.
void SourceViewController::tellTable()
{
    ObjectTable* const table = ui->objectTablePanel;
    const PaneSource& stored = theNavigator->pane(storedPane);
    if (stored.hasObjects()) {
        if (stored.source() != table->source())
            table->setSource(stored.source());
        selectRowOfCaret();
        return;
    }
    const QString reason = theContent == SourceContent::isRaw
        ? tr("Objects are known when “Show Raw Source” is off")
        : theLower.note->text();
    table->setSource(nullptr, reason);
}

void SourceViewController::selectRowOfCaret()
{
    ObjectTable* const table = ui->objectTablePanel;
    const PaneSource& stored = theNavigator->pane(storedPane);
    if (theTableLeads || table->isHidden() || !table->source()
        || table->source() != stored.source())
        return;
    const std::optional<pdfObject> object = stored.objectAt(stored.view()->caret());
    table->setCurrent(object ? std::optional(object->index()) : std::nullopt);
}

} // namespace tarnwick
