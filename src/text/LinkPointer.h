#pragma once

#include "text/TextPosition.h"

#include <QPointF>

#include <functional>
#include <optional>

class QWidget;

namespace tarnwick {

/// The link under the mouse pointer, while the pointer follows links: as long as Ctrl is held, so
/// that a plain click goes on selecting. Shows the hand over one.
class LinkPointer
{
public:
    /// The link at a point of the viewport.
    using Find = std::function<std::optional<TextRange>(const QPointF& point)>;

    /// @param viewport gets the cursor; borrowed.
    LinkPointer(QWidget* viewport, Find find);

    /// The pointer is at a point of the viewport, or outside of it, or a key was pressed or let go.
    /// @returns whether another link, or none any more, is under it now.
    /// @{
    bool move(const QPointF& point, Qt::KeyboardModifiers keys);
    bool leave();
    bool setKeys(Qt::KeyboardModifiers keys);
    /// @}

    const std::optional<TextRange>& link() const { return theLink; }

    /// The button went down. @returns whether a link has it; a click is then none on the text.
    bool press();
    /// The button was let go. @returns the link on which it went down, when it is still there.
    std::optional<TextRange> release();

private:
    bool update();

    QWidget* theViewport;
    Find theFind;
    std::optional<QPointF> thePoint;
    Qt::KeyboardModifiers theKeys;
    std::optional<TextRange> theLink;
    std::optional<TextRange> thePressed;
};

} // namespace tarnwick
