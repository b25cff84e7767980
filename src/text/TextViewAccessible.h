#pragma once

#include "TextExcerpt.h"

#include <QAccessibleWidget>

namespace tarnwick {

class PlainTextView;

/// Reads a text view to a screen reader, as a text that can be walked through and selected from but
/// not changed.
///
/// Places are plain integers here and readers fetch all they can get, so of a long text only an
/// excerpt around the caret is presented. It moves along with the caret.
class TextViewAccessible : public QAccessibleWidget, public QAccessibleTextInterface
{
public:
    explicit TextViewAccessible(PlainTextView* view);

    /// From now on text views are accessible this way.
    static void install();

    /// The view's caret, selection or whole text changed: tells screen readers, if there are any.
    static void tell(PlainTextView* view, bool textIsNew);

    void* interface_cast(QAccessible::InterfaceType type) override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;

    void selection(int index, int* start, int* end) const override;
    int selectionCount() const override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(int start, int end) const override;
    int characterCount() const override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int start, int end) override;
    QString attributes(int offset, int* start, int* end) const override;

private:
    PlainTextView* view() const;
    const TextExcerpt& excerpt() const;
    void follow(bool textIsNew);

    mutable TextExcerpt theExcerpt;
    mutable std::weak_ptr<const TextStorage> theStorage; ///< that the excerpt is of
};

} // namespace tarnwick
