#include "TextViewAccessible.h"

#include "text/PlainTextView.h"

#include <QAccessible>

#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// Units before and behind the caret that are presented at least.
constexpr qsizetype reach = 32 * 1024;

QAccessibleInterface* makeAccessible(const QString&, QObject* object)
{
    auto* view = qobject_cast<PlainTextView*>(object);
    return view ? new TextViewAccessible(view) : nullptr;
}

} // namespace

TextViewAccessible::TextViewAccessible(PlainTextView* view)
    : QAccessibleWidget(view, QAccessible::EditableText)
{
}

void TextViewAccessible::install()
{
    static const bool isInstalled = (QAccessible::installFactory(makeAccessible), true);
    static_cast<void>(isInstalled);
}

PlainTextView* TextViewAccessible::view() const
{
    return static_cast<PlainTextView*>(widget());
}

const TextExcerpt& TextViewAccessible::excerpt() const
{
    const std::shared_ptr<const TextStorage> storage = view()->textStorage();
    if (theStorage.lock() != storage || !theExcerpt.coversWell(view()->caret())) {
        theExcerpt = TextExcerpt(storage, view()->caret(), reach);
        theStorage = storage;
    }
    return theExcerpt;
}

void TextViewAccessible::tell(PlainTextView* view, bool textIsNew)
{
    if (!QAccessible::isActive())
        return;
    if (QAccessibleInterface* known = QAccessible::queryAccessibleInterface(view))
        static_cast<TextViewAccessible*>(known)->follow(textIsNew);
}

void TextViewAccessible::follow(bool textIsNew)
{
    const QString before = theExcerpt.text();
    const TextRange rangeBefore = theExcerpt.range();
    const TextExcerpt& now = excerpt();
    if (textIsNew || rangeBefore != now.range()) {
        QAccessibleTextUpdateEvent update(view(), 0, before, now.text());
        QAccessible::updateAccessibility(&update);
    }
    QAccessibleTextCursorEvent caret(view(), cursorPosition());
    QAccessible::updateAccessibility(&caret);
    int start = 0;
    int end = 0;
    selection(0, &start, &end);
    QAccessibleTextSelectionEvent selected(view(), start, end);
    QAccessible::updateAccessibility(&selected);
}

void* TextViewAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TextInterface)
        return static_cast<QAccessibleTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QAccessible::State TextViewAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    state.multiLine = true;
    state.selectableText = true;
    return state;
}

QString TextViewAccessible::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Value ? excerpt().text() : QAccessibleWidget::text(kind);
}

void TextViewAccessible::selection(int index, int* start, int* end) const
{
    *start = *end = 0;
    if (index == 0 && view()->hasSelection()) {
        *start = excerpt().offsetOf(view()->selection().begin);
        *end = excerpt().offsetOf(view()->selection().end);
    }
}

int TextViewAccessible::selectionCount() const
{
    return view()->hasSelection() ? 1 : 0;
}

void TextViewAccessible::addSelection(int start, int end)
{
    setSelection(0, start, end);
}

void TextViewAccessible::removeSelection(int index)
{
    if (index == 0)
        view()->setSelection(view()->caret(), view()->caret());
}

void TextViewAccessible::setSelection(int index, int start, int end)
{
    if (index == 0)
        view()->setSelection(excerpt().positionOf(start), excerpt().positionOf(end));
}

int TextViewAccessible::cursorPosition() const
{
    return excerpt().offsetOf(view()->caret());
}

void TextViewAccessible::setCursorPosition(int position)
{
    const TextPosition place = excerpt().positionOf(position);
    view()->setSelection(place, place);
}

QString TextViewAccessible::text(int start, int end) const
{
    const int last = end < 0 ? characterCount() : end;
    return excerpt().text().mid(start, last - start);
}

int TextViewAccessible::characterCount() const
{
    return static_cast<int>(excerpt().text().size());
}

QRect TextViewAccessible::characterRect(int offset) const
{
    const std::optional<QRectF> left = view()->caretRect(excerpt().positionOf(offset));
    if (!left)
        return {};
    const std::optional<QRectF> right = view()->caretRect(excerpt().positionOf(offset + 1));
    const bool isSameRow = right && right->top() == left->top();
    const qreal width = isSameRow ? right->left() - left->left() : 0;
    const QRectF local = left->adjusted(0, 0, width, 0).normalized();
    return {view()->viewport()->mapToGlobal(local.topLeft().toPoint()), local.size().toSize()};
}

int TextViewAccessible::offsetAtPoint(const QPoint& point) const
{
    const QPoint local = view()->viewport()->mapFromGlobal(point);
    if (!view()->viewport()->rect().contains(local))
        return -1;
    const TextPosition position = view()->positionAt(local);
    const TextRange range = excerpt().range();
    return position < range.begin || position > range.end ? -1 : excerpt().offsetOf(position);
}

void TextViewAccessible::scrollToSubstring(int start, int end)
{
    view()->scrollTo(excerpt().positionOf(end));
    view()->scrollTo(excerpt().positionOf(start));
}

QString TextViewAccessible::attributes(int offset, int* start, int* end) const
{
    const qsizetype line = excerpt().positionOf(offset).line;
    *start = excerpt().offsetOf({line, 0});
    *end = std::max(*start, excerpt().offsetOf({line + 1, 0}) - 1);
    const ColourRole role = view()->textStorage()->line(line, 0, 0).role;
    const QColor colour = TextPalette(view()->palette()).colour(role);
    return u"color:rgb(%1,%2,%3);"_s.arg(colour.red()).arg(colour.green()).arg(colour.blue());
}

} // namespace tarnwick
