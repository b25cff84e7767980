#pragma once

#include <QAccessibleWidget>

namespace tarnwick {

class PDFView;

/// What a screen reader meets in a page view: a document named after the present page, whose text
/// it reads.
class PDFViewAccessible : public QAccessibleWidget, public QAccessibleTextInterface
{
public:
    /// Lets page views be found by screen readers from now on. Any number of calls.
    static void install();

    explicit PDFViewAccessible(PDFView* view);

    void* interface_cast(QAccessible::InterfaceType type) override;
    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;

    void selection(int selectionIndex, int* startOffset, int* endOffset) const override;
    int selectionCount() const override;
    void addSelection(int startOffset, int endOffset) override;
    void removeSelection(int selectionIndex) override;
    void setSelection(int selectionIndex, int startOffset, int endOffset) override;
    /// Where a reader has put the caret in the present page; 0 until then, and on another page.
    int cursorPosition() const override;
    /// Puts the caret there and scrolls it into view.
    void setCursorPosition(int position) override;
    QString text(int startOffset, int endOffset) const override;
    int characterCount() const override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int startIndex, int endIndex) override;
    QString attributes(int offset, int* startOffset, int* endOffset) const override;

private:
    PDFView* view() const;

    int theCaretPage = -1;
    int theCaret = 0;
};

} // namespace tarnwick
