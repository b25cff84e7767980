// The part of SourceViewController that has the table of objects beside the panes.
#include "inspector/SourceViewController.h"

#include "ObjectPanel.h"
#include "ObjectTable.h"
#include "ObjectTree.h"
#include "SourceNavigator.h"
#include "TableLoader.h"
#include "document/Document.h"

#include "ui_SourceWindow.h"

#include <QScopedValueRollback>
#include <QSettings>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr auto storedPane = SourceNavigator::Pane::isStored;

const QString workbenchKey = u"SourceWindow/workbench"_s;
const QString tableKey = u"SourceWindow/objectTable"_s;

} // namespace

void SourceViewController::connectTable()
{
    ui->workbench->setStretchFactor(0, 1);
    ui->workbench->setStretchFactor(1, 0);
    if (!ui->workbench->restoreState(QSettings().value(workbenchKey).toByteArray()))
        ui->workbench->setSizes({480, 420});
    showTable(QSettings().value(tableKey, false).toBool());
    const auto follow = [this](auto* panel) {
        const auto lead = [this, panel](auto act, std::size_t object) {
            const QScopedValueRollback leading(theTableLeads, true);
            const pdfObject target = panel->source()->theCatalog().object(object);
            say(theLower, (theNavigator->*act)(target, storedPane));
        };
        using Panel = std::remove_pointer_t<decltype(panel)>;
        connect(panel, &Panel::chosen, this,
            [lead](std::size_t object) { lead(&SourceNavigator::lookAt, object); });
        connect(panel, &Panel::wanted, this,
            [lead](std::size_t object) { lead(&SourceNavigator::show, object); });
    };
    follow(ui->objectTablePanel);
    follow(ui->objectTreePanel);
    theTableLoader = new TableLoader(this);
    ObjectTable* const table = ui->objectTablePanel;
    connect(table, &ObjectTable::tableWanted, theTableLoader, &TableLoader::start);
    connect(theTableLoader, &TableLoader::finished, this,
        [this, table] { table->setTabled(theTableLoader->tabled(), theTableLoader->failure()); });
    connect(theNavigator, &SourceNavigator::unlistedWanted, this,
        [this](int number) { showUnlisted(number, true); });
    connect(table, &ObjectTable::flattenedWanted, this,
        [this](qint64 number) { say(theLower, theNavigator->showInOther(storedPane, number)); });
    connect(table, &ObjectTable::unlistedChosen, this,
        [this](int number) { showUnlisted(number, false); });
    connect(table, &ObjectTable::unlistedWanted, this,
        [this](int number) { showUnlisted(number, true); });
}

/// What has no place in the panes shows in the panel of objects.
/// @param isWanted the user means to go there, and not only past it.
void SourceViewController::showUnlisted(int number, bool isWanted)
{
    if (isWanted && theObjectPanel->isHidden())
        toggleObjectPanel();
    theObjectPanel->showObject({number, std::nullopt, ObjectFile::isStored}, isWanted);
    if (isWanted)
        theObjectPanel->setFocus(Qt::OtherFocusReason);
}

void SourceViewController::setVersionsFact(const QString& text)
{
    auto* button = qobject_cast<QToolButton*>(ui->objectTabs->cornerWidget());
    if (!button) {
        button = new QToolButton;
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::TabFocus);
        button->setToolTip(tr("Show the saved versions (Ctrl+Shift+V)"));
        connect(button, &QToolButton::clicked, theOwner, &Document::openVersions);
        ui->objectTabs->setCornerWidget(button);
    }
    button->setText(text);
    button->setVisible(!text.isEmpty());
}

void SourceViewController::saveTable() const
{
    QSettings().setValue(workbenchKey, ui->workbench->saveState());
}

void SourceViewController::showTable(bool shows)
{
    ui->objectTabs->setVisible(shows);
    ui->sidePanels->setVisible(shows || !theObjectPanel->isHidden());
}

void SourceViewController::toggleObjectTable()
{
    const bool shows = ui->objectTabs->isHidden();
    if (!shows && ui->objectTabs->isAncestorOf(focusWidget()))
        theLower.view->setFocus(Qt::OtherFocusReason);
    showTable(shows);
    QSettings().setValue(tableKey, shows);
    selectRowOfCaret();
}

void SourceViewController::filterObjects()
{
    if (ui->objectTabs->isHidden())
        toggleObjectTable();
    ui->objectTabs->setCurrentWidget(ui->objectTablePanel);
    ui->objectTablePanel->editFilter();
}

/// What the lower pane shows now, or why it has no objects.
void SourceViewController::tellTable()
{
    const PaneSource& stored = theNavigator->pane(storedPane);
    if (!stored.hasObjects()) {
        const QString reason = theContent == SourceContent::isRaw
            ? tr("Objects are known when “Show Raw Source” is off")
            : theLower.note->text();
        theTableLoader->setSource(nullptr, nullptr);
        ui->objectTablePanel->setSource(nullptr, reason);
        ui->objectTreePanel->setSource(nullptr, reason);
    } else if (stored.source() != ui->objectTablePanel->source()) {
        ui->objectTablePanel->setSource(stored.source());
        ui->objectTreePanel->setSource(stored.source());
        tellTableLoader();
    }
    selectRowOfCaret();
}

/// What the stored file is now, to the engine and to the listing.
void SourceViewController::tellTableLoader()
{
    theTableLoader->setSource(theRenderedDocument, ui->objectTablePanel->source());
    if (ui->objectTablePanel->isVisible())
        theTableLoader->start();
}

void SourceViewController::selectRowOfCaret()
{
    ObjectTable* const table = ui->objectTablePanel;
    const PaneSource& stored = theNavigator->pane(storedPane);
    if (theTableLeads || ui->objectTabs->isHidden() || !table->source()
        || table->source() != stored.source())
        return;
    const std::optional<pdfObject> object = stored.objectAt(stored.view()->caret());
    table->setCurrent(object ? std::optional(object->index()) : std::nullopt);
}

} // namespace tarnwick
