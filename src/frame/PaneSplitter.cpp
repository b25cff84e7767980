#include "frame/PaneSplitter.h"

#include <QKeyEvent>
#include <QPainter>

#include <cstdlib>

namespace tarnwick {

namespace {

constexpr int keyStep = 16; // device-independent pixels
constexpr int farFactor = 4;

class PaneDivider : public QSplitterHandle
{
public:
    PaneDivider(Qt::Orientation orientation, QSplitter* splitter)
        : QSplitterHandle(orientation, splitter)
    {
        setFocusPolicy(Qt::TabFocus);
        setAccessibleName(PaneSplitter::tr("Divider"));
        setAccessibleDescription(PaneSplitter::tr("Arrow keys move it"));
    }

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        const bool isSideways = orientation() == Qt::Horizontal;
        const int step
            = event->modifiers().testFlag(Qt::ShiftModifier) ? keyStep * farFactor : keyStep;
        switch (event->key()) {
        case Qt::Key_Left:
            return isSideways ? moveBy(-step) : event->ignore();
        case Qt::Key_Right:
            return isSideways ? moveBy(step) : event->ignore();
        case Qt::Key_Up:
            return isSideways ? event->ignore() : moveBy(-step);
        case Qt::Key_Down:
            return isSideways ? event->ignore() : moveBy(step);
        case Qt::Key_Home:
            return moveBy(-length());
        case Qt::Key_End:
            return moveBy(length());
        default:
            QSplitterHandle::keyPressEvent(event);
        }
    }

    void paintEvent(QPaintEvent* event) override
    {
        QSplitterHandle::paintEvent(event);
        if (!hasFocus())
            return;
        QPainter painter(this);
        painter.fillRect(rect(), palette().highlight());
    }

private:
    int length() const
    {
        return orientation() == Qt::Horizontal ? splitter()->width() : splitter()->height();
    }
    int place() const { return orientation() == Qt::Horizontal ? x() : y(); }

    /// As far as the mouse would have to go: a pane is shut or has its smallest size, and a small
    /// step from one leads back to it.
    void moveBy(int distance)
    {
        const int before = place();
        const bool isMirrored
            = orientation() == Qt::Horizontal && layoutDirection() == Qt::RightToLeft;
        for (int reach = distance; place() == before && std::abs(reach) <= 2 * length();
             reach *= 2) {
            const int target = before + reach;
            moveSplitter(isMirrored ? splitter()->contentsRect().width() - target : target);
        }
    }
};

} // namespace

QSplitterHandle* PaneSplitter::createHandle()
{
    return new PaneDivider(orientation(), this);
}

} // namespace tarnwick
