#include "PaneLayout.h"

#include "frame/PaneSplitter.h"

#include <QApplication>
#include <QSettings>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

const QString rowsKey = u"SourceWindow/panes"_s;
const QString rowsBelowColumnsKey = u"SourceWindow/panesBelowColumns"_s;
const QString columnsKey = u"SourceWindow/columns"_s;
const QString sideBySideKey = u"SourceWindow/sideBySide"_s;

void restoreOr(QSplitter* splitter, const QString& key, const QList<int>& sizes)
{
    if (!splitter->restoreState(QSettings().value(key).toByteArray()))
        splitter->setSizes(sizes);
}

} // namespace

PaneLayout::PaneLayout(QSplitter* splitter)
    : QObject(splitter)
    , theRows(splitter)
{
    connect(qApp, &QApplication::focusChanged, this,
        [this](const QWidget*, const QWidget* now) { followFocus(now); });
}

void PaneLayout::followFocus(const QWidget* widget)
{
    for (int pane = 0; pane < thePanes.size(); ++pane) {
        if (widget && widget == thePanes.at(pane).view)
            theCurrent = pane;
    }
}

// --- Side by side --------------------------------------------------------------------------------

void PaneLayout::restore()
{
    restoreOr(theRows, rowsKey, {280, 380, 240});
    if (QSettings().value(sideBySideKey).toBool())
        setSideBySide(true);
}

void PaneLayout::save() const
{
    QSettings settings;
    settings.setValue(sideBySideKey, areSideBySide());
    settings.setValue(areSideBySide() ? rowsBelowColumnsKey : rowsKey, theRows->saveState());
    if (areSideBySide())
        settings.setValue(columnsKey, theColumns->saveState());
}

void PaneLayout::setSideBySide(bool sideBySide)
{
    if (sideBySide == areSideBySide())
        return;
    save();
    if (sideBySide) {
        theColumns = new PaneSplitter(Qt::Horizontal);
        theColumns->setHandleWidth(theRows->handleWidth());
        theColumns->addWidget(thePanes.at(0).widget);
        theColumns->addWidget(thePanes.at(1).widget);
        theRows->insertWidget(0, theColumns);
        restoreOr(theColumns, columnsKey, {1000, 1000});
        restoreOr(theRows, rowsBelowColumnsKey, {660, 240});
    } else {
        theRows->insertWidget(0, thePanes.at(0).widget);
        theRows->insertWidget(1, thePanes.at(1).widget);
        delete std::exchange(theColumns, nullptr);
        restoreOr(theRows, rowsKey, {280, 380, 240});
    }
    QSettings().setValue(sideBySideKey, sideBySide);
    thePanes.at(theCurrent).view->setFocus(Qt::OtherFocusReason); // moving the panes took it
}

// --- One alone, and the keyboard -----------------------------------------------------------------

bool PaneLayout::isOneAlone() const
{
    return std::count_if(thePanes.cbegin(), thePanes.cend(), [](const Pane& pane) {
        return !pane.widget->isHidden();
    }) == 1;
}

void PaneLayout::setOneAlone(bool alone)
{
    for (int pane = 0; pane < thePanes.size(); ++pane)
        thePanes.at(pane).widget->setHidden(alone && pane != theCurrent);
    if (theColumns)
        theColumns->setHidden(alone && theCurrent > 1);
    thePanes.at(theCurrent).view->setFocus(Qt::OtherFocusReason);
}

void PaneLayout::focusOther(int step)
{
    const int count = static_cast<int>(thePanes.size());
    const bool wasAlone = isOneAlone();
    theCurrent = (theCurrent + step + count) % count;
    setOneAlone(wasAlone);
}

} // namespace tarnwick
