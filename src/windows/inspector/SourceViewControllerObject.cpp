// The part of SourceViewController that shows a single object beside the panes.
#include "inspector/SourceViewController.h"

#include "ObjectPanel.h"
#include "SourceNavigator.h"
#include "document/Document.h"

#include "ui_SourceWindow.h"

#include <QFileInfo>
#include <QSettings>

#include <limits>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr auto storedPane = SourceNavigator::Pane::isStored;

const QString panelKey = u"SourceWindow/objectPanel"_s;
const QString sidePanelsKey = u"SourceWindow/sidePanels"_s;

} // namespace

void SourceViewController::connectObjectPanel()
{
    theObjectPanel->setObjectName(u"objectPanel"_s);
    ui->sidePanels->addWidget(theObjectPanel);
    ui->sidePanels->restoreState(QSettings().value(sidePanelsKey).toByteArray());
    connect(
        theObjectPanel, &ObjectPanel::objectWanted, this, &SourceViewController::followToObject);
    connect(theObjectPanel, &ObjectPanel::shown, this, &SourceViewController::objectShown);
    theObjectPanel->setVisible(QSettings().value(panelKey, false).toBool());
}

void SourceViewController::saveObjectPanel() const
{
    QSettings().setValue(sidePanelsKey, ui->sidePanels->saveState());
}

void SourceViewController::showObjectPanel(bool shows)
{
    theObjectPanel->setVisible(shows);
    ui->sidePanels->setVisible(shows || !ui->objectTabs->isHidden());
}

void SourceViewController::toggleObjectPanel()
{
    const bool shows = theObjectPanel->isHidden();
    if (!shows && theObjectPanel->isAncestorOf(focusWidget()))
        theLower.view->setFocus(Qt::OtherFocusReason);
    showObjectPanel(shows);
    QSettings().setValue(panelKey, shows);
    showObjectOfCaret(true);
}

/// What the file is now.
void SourceViewController::tellObjectPanel()
{
    const QFileInfo file(theOwner->pathOfCopy());
    theObjectPanel->setDocument(theRenderedDocument, file.absolutePath(), file.completeBaseName());
    showObjectOfCaret(false);
}

void SourceViewController::showObjectOfCaret(bool isUrgent)
{
    const PaneSource& stored = theNavigator->pane(storedPane);
    if (theObjectPanel->isHidden() || !stored.hasObjects())
        return;
    const std::optional<pdfObject> object = stored.objectAt(stored.view()->caret());
    if (!object || object->objNo() > std::numeric_limits<int>::max())
        return;
    theObjectPanel->showObject(static_cast<int>(object->objNo()), object->range(), isUrgent);
}

/// What is in no listing, as objects in object streams, shows in the panel alone.
void SourceViewController::followToObject(int number)
{
    const PaneSource& stored = theNavigator->pane(storedPane);
    const auto object = stored.hasObjects() ? stored.catalog().find(number) : std::nullopt;
    if (object) {
        say(theLower, theNavigator->show(*object, storedPane));
        showObjectOfCaret(true);
    } else {
        theObjectPanel->showObject(number, std::nullopt, true);
    }
}

} // namespace tarnwick
