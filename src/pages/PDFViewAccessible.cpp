#include "PDFViewAccessible.h"

#include "pages/PDFView.h"

#include <algorithm>

namespace tarnwick {

namespace {

QAccessibleInterface* make(const QString&, QObject* object)
{
    auto* const view = qobject_cast<PDFView*>(object);
    return view ? new PDFViewAccessible(view) : nullptr;
}

} // namespace

void PDFViewAccessible::install()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(&make);
        return true;
    }();
    Q_UNUSED(isInstalled)
}

PDFViewAccessible::PDFViewAccessible(PDFView* view)
    : QAccessibleWidget(view, QAccessible::Document)
{
}

PDFView* PDFViewAccessible::view() const
{
    return static_cast<PDFView*>(widget());
}

void* PDFViewAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TextInterface)
        return static_cast<QAccessibleTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QString PDFViewAccessible::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name ? view()->currentPageName() : QAccessibleWidget::text(kind);
}

QAccessible::State PDFViewAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    state.multiLine = true;
    state.selectableText = true;
    return state;
}

/// The part of the present page that is selected; the rest of a selection is on other pages.
void PDFViewAccessible::selection(int selectionIndex, int* startOffset, int* endOffset) const
{
    *startOffset = 0;
    *endOffset = 0;
    if (selectionIndex != 0)
        return;
    for (const PDFSelection::Range& range : view()->currentSelection().ranges()) {
        if (range.page == view()->currentPage()) {
            *startOffset = static_cast<int>(range.start);
            *endOffset = static_cast<int>(range.start + range.length);
        }
    }
}

int PDFViewAccessible::selectionCount() const
{
    int start = 0;
    int end = 0;
    selection(0, &start, &end);
    return end > start ? 1 : 0;
}

void PDFViewAccessible::addSelection(int startOffset, int endOffset)
{
    setSelection(0, startOffset, endOffset);
}

void PDFViewAccessible::removeSelection(int selectionIndex)
{
    if (selectionIndex == 0)
        view()->setCurrentSelection({}, false);
}

void PDFViewAccessible::setSelection(int selectionIndex, int startOffset, int endOffset)
{
    const int start = std::clamp(startOffset, 0, characterCount());
    const int end = std::clamp(endOffset, start, characterCount());
    if (selectionIndex != 0 || view()->currentPage() < 0)
        return;
    view()->setCurrentSelection(end > start
            ? PDFSelection(PDFSelection::Range{view()->currentPage(), start, end - start})
            : PDFSelection(),
        false);
}

int PDFViewAccessible::cursorPosition() const
{
    return theCaretPage == view()->currentPage() ? std::min(theCaret, characterCount()) : 0;
}

void PDFViewAccessible::setCursorPosition(int position)
{
    theCaretPage = view()->currentPage();
    theCaret = std::clamp(position, 0, characterCount());
    if (theCaret < characterCount())
        scrollToSubstring(theCaret, theCaret + 1);
    QAccessibleTextCursorEvent event(view(), theCaret);
    QAccessible::updateAccessibility(&event);
}

QString PDFViewAccessible::text(int startOffset, int endOffset) const
{
    const int start = std::max(0, startOffset);
    return view()->currentPageText().mid(start, std::max(0, endOffset - start));
}

int PDFViewAccessible::characterCount() const
{
    return static_cast<int>(view()->currentPageText().size());
}

QRect PDFViewAccessible::characterRect(int offset) const
{
    const QRect rect = view()->characterRect(offset);
    return rect.isNull() ? rect
                         : QRect(view()->viewport()->mapToGlobal(rect.topLeft()), rect.size());
}

int PDFViewAccessible::offsetAtPoint(const QPoint& point) const
{
    return static_cast<int>(view()->characterAt(view()->viewport()->mapFromGlobal(point)));
}

void PDFViewAccessible::scrollToSubstring(int startIndex, int endIndex)
{
    const PDFSelection before = view()->currentSelection();
    setSelection(0, startIndex, std::max(endIndex, startIndex + 1));
    view()->scrollSelectionToVisible();
    view()->setCurrentSelection(before, false);
}

QString PDFViewAccessible::attributes(int, int* startOffset, int* endOffset) const
{
    *startOffset = 0;
    *endOffset = characterCount();
    return {};
}

} // namespace tarnwick
