#include "LinkPointer.h"

#include <QWidget>

#include <utility>

namespace tarnwick {

LinkPointer::LinkPointer(QWidget* viewport, Find find)
    : theViewport(viewport)
    , theFind(std::move(find))
{
}

bool LinkPointer::move(const QPointF& point, Qt::KeyboardModifiers keys)
{
    thePoint = point;
    theKeys = keys;
    return update();
}

bool LinkPointer::leave()
{
    thePoint.reset();
    return update();
}

bool LinkPointer::setKeys(Qt::KeyboardModifiers keys)
{
    theKeys = keys;
    return update();
}

bool LinkPointer::update()
{
    const bool follows = thePoint && theKeys == Qt::ControlModifier;
    const std::optional<TextRange> link = follows ? theFind(*thePoint) : std::nullopt;
    if (link == theLink)
        return false;
    theLink = link;
    theViewport->setCursor(link ? Qt::PointingHandCursor : Qt::IBeamCursor);
    return true;
}

bool LinkPointer::press()
{
    thePressed = theLink;
    return thePressed.has_value();
}

std::optional<TextRange> LinkPointer::release()
{
    const std::optional<TextRange> pressed = std::exchange(thePressed, std::nullopt);
    return pressed == theLink ? pressed : std::nullopt;
}

} // namespace tarnwick
