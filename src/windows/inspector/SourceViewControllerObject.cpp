// The part of SourceViewController that shows a single object beside the panes.
#include "inspector/SourceViewController.h"

#include "ObjectPanel.h"
#include "ObjectTable.h"
#include "SourceNavigator.h"
#include "document/Document.h"

#include "ui_SourceWindow.h"

#include <QFileInfo>
#include <QSettings>

#include <limits>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

using SourcePane = SourceNavigator::Pane;

SourcePane paneOf(ObjectFile file)
{
    return file == ObjectFile::isStored ? SourcePane::isStored : SourcePane::isFlattened;
}

ObjectFile fileOf(SourcePane pane)
{
    return pane == SourcePane::isStored ? ObjectFile::isStored : ObjectFile::isFlattened;
}

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
    connect(theObjectPanel, &ObjectPanel::placeWanted, this, [this](qint64 offset) {
        const auto pane = paneOf(theObjectPanel->choice().file);
        const QString failure = theNavigator->goToOffset(static_cast<std::size_t>(offset), pane);
        if (!failure.isEmpty())
            emit theNavigator->said(pane, failure);
    });
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
    tellObjectSources();
    showObjectOfCaret(false);
}

/// What is known of the objects of both files by now.
void SourceViewController::tellObjectSources()
{
    const auto sourceOf = [this](SourcePane pane) {
        const PaneSource& known = theNavigator->pane(pane);
        return known.hasObjects() ? known.source() : nullptr;
    };
    theObjectPanel->setStoredSource(sourceOf(SourcePane::isStored));
    theObjectPanel->setFlattened(theFlatBytes, sourceOf(SourcePane::isFlattened));
}

/// Of the pane that had the keyboard last, or of one in which the caret has moved without it.
void SourceViewController::showObjectOfCaret(bool isUrgent)
{
    const PaneSource& here = theNavigator->pane(theNavigator->current());
    if (theObjectPanel->isHidden() || !here.hasObjects())
        return;
    const std::optional<pdfObject> object = here.objectAt(here.view()->caret());
    if (!object || object->objNo() > std::numeric_limits<int>::max())
        return;
    theObjectPanel->showObject(
        {static_cast<int>(object->objNo()), object->range(), fileOf(theNavigator->current())},
        isUrgent);
}

/// What is in no listing, as objects in object streams, shows in the panel alone.
void SourceViewController::followToObject(int number)
{
    const ObjectFile file = theObjectPanel->choice().file;
    const PaneSource& pane = theNavigator->pane(paneOf(file));
    const auto object = pane.hasObjects() ? pane.catalog().find(number) : std::nullopt;
    if (object) {
        say(file == ObjectFile::isStored ? theLower : theUpper,
            theNavigator->show(*object, paneOf(file)));
        showObjectOfCaret(true);
    } else {
        theObjectPanel->showObject({number, std::nullopt, file}, true);
        if (file == ObjectFile::isStored)
            ui->objectTablePanel->setCurrentUnlisted(number);
    }
}

} // namespace tarnwick
