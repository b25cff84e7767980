// The part of PlainTextView that carries out the menu's commands.
#include "text/PlainTextView.h"

#include "ClipboardText.h"
#include "TextPrintJob.h"

#include <QContextMenuEvent>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr std::array zoomSteps{
    25, 33, 50, 67, 80, 90, 100, 110, 125, 150, 175, 200, 250, 300, 400, 500, 600, 800};

} // namespace

bool PlainTextView::validateCommand(const QString& command) const
{
    if (command == "copy"_L1)
        return hasSelection();
    if (command == "doFindSelection"_L1)
        return theIsFindBarEnabled && !findableSelection().isEmpty();
    if (command == "performFind"_L1 || command == "doFindNext"_L1 || command == "doFindPrev"_L1)
        return theIsFindBarEnabled;
    if (command == "toggleGutter"_L1)
        return theGutterKind != Gutter::isNone;
    if (command == "zoomIn"_L1)
        return theZoomPercent < zoomSteps.back();
    if (command == "zoomOut"_L1)
        return theZoomPercent > zoomSteps.front();
    return true;
}

bool PlainTextView::commandIsChecked(const QString& command) const
{
    return command == "toggleGutter"_L1 ? isGutterShown()
                                        : command == "toggleWrap"_L1 && isWrapping();
}

void PlainTextView::copy()
{
    if (hasSelection())
        ClipboardText::copy(theStorage, selection(), this);
}

void PlainTextView::offerPrimarySelection()
{
    if (hasSelection())
        ClipboardText::offerAsPrimary(theStorage, selection());
}

void PlainTextView::selectAll()
{
    const qsizetype last = theStorage->lineCount() - 1;
    select({}, {last, theStorage->lineLength(last)});
    offerPrimarySelection();
}

void PlainTextView::zoomIn()
{
    const auto* larger = std::upper_bound(zoomSteps.begin(), zoomSteps.end(), theZoomPercent);
    if (larger != zoomSteps.end())
        setZoomPercent(*larger);
}

void PlainTextView::zoomOut()
{
    const auto* notSmaller = std::lower_bound(zoomSteps.begin(), zoomSteps.end(), theZoomPercent);
    if (notSmaller != zoomSteps.begin())
        setZoomPercent(*std::prev(notSmaller));
}

void PlainTextView::actualSize()
{
    setZoomPercent(100);
}

void PlainTextView::toggleWrap()
{
    setWrapping(!isWrapping());
}

void PlainTextView::print()
{
    new TextPrintJob(theStorage, theTextFont, window()->windowTitle(), theMissing, window());
}

void PlainTextView::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu menu(this);
    fillContextMenu(menu);
    const bool isKey = event->reason() == QContextMenuEvent::Keyboard;
    emit contextMenuOpening(
        &menu, menu.actions().value(0), isKey ? theCaret : positionAt(event->pos()));
    const std::optional<QRectF> caret = isKey ? caretRect(theCaret) : std::nullopt;
    menu.exec(caret ? viewport()->mapToGlobal(caret->bottomLeft().toPoint()) : event->globalPos());
}

void PlainTextView::fillContextMenu(QMenu& menu)
{
    addCommand(menu, tr("&Copy"), u"copy"_s, &PlainTextView::copy, QKeySequence::Copy);
    addCommand(menu, tr("Select &All"), u"selectAll"_s, &PlainTextView::selectAll,
        QKeySequence::SelectAll);
    menu.addSeparator();
    if (theIsFindBarEnabled)
        addCommand(
            menu, tr("&Find…"), u"performFind"_s, &PlainTextView::performFind, QKeySequence::Find);
    QAction* wrap
        = addCommand(menu, tr("&Wrap Lines"), u"toggleWrap"_s, &PlainTextView::toggleWrap);
    wrap->setCheckable(true);
    wrap->setChecked(isWrapping());
    addZoomMenu(menu);
    menu.addSeparator();
    addCommand(menu, tr("&Print…"), u"print"_s, &PlainTextView::print);
}

void PlainTextView::addZoomMenu(QMenu& menu)
{
    QMenu& zoom = *menu.addMenu(tr("&Zoom"));
    addCommand(zoom, tr("Zoom &In"), u"zoomIn"_s, &PlainTextView::zoomIn, QKeySequence::ZoomIn);
    addCommand(zoom, tr("Zoom &Out"), u"zoomOut"_s, &PlainTextView::zoomOut, QKeySequence::ZoomOut);
    addCommand(zoom, tr("&Actual Size"), u"actualSize"_s, &PlainTextView::actualSize,
        QKeySequence(Qt::CTRL | Qt::Key_0));
}

} // namespace tarnwick
