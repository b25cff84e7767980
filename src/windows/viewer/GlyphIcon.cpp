#include "GlyphIcon.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

namespace tarnwick {

namespace {

using GlyphIcon::Shape;

/// Paints a shape in a field of 16 x 16 units.
void paintShape(QPainter& painter, Shape shape)
{
    switch (shape) {
    case Shape::isMagnifier:
        painter.drawEllipse(QRectF(1.5, 2.5, 7.5, 7.5));
        painter.drawLine(QPointF(8, 9), QPointF(11.5, 12.5));
        painter.setBrush(painter.pen().color());
        painter.setPen(Qt::NoPen);
        painter.drawPolygon(QPolygonF({{11, 7}, {16, 7}, {13.5, 10}}));
        break;
    case Shape::isCross:
        painter.drawLine(QPointF(4, 4), QPointF(12, 12));
        painter.drawLine(QPointF(12, 4), QPointF(4, 12));
        break;
    case Shape::isSideBar:
        painter.drawRoundedRect(QRectF(1.5, 2.5, 13, 11), 1.5, 1.5);
        painter.drawLine(QPointF(6, 2.5), QPointF(6, 13.5));
        for (const double y : {5.5, 8., 10.5})
            painter.drawLine(QPointF(3, y), QPointF(4.5, y));
        break;
    }
}

class Engine : public QIconEngine
{
public:
    explicit Engine(Shape shape)
        : theShape(shape)
    {
    }

    void paint(QPainter* painter, const QRect& area, QIcon::Mode mode, QIcon::State) override
    {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const int side = qMin(area.width(), area.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(area.center() - QPointF(side, side) / 2 + QPointF(0.5, 0.5));
        painter->scale(side / 16., side / 16.);
        painter->setPen(QPen(QApplication::palette().color(group, QPalette::WindowText), 1.3,
            Qt::SolidLine, Qt::RoundCap));
        paintShape(*painter, theShape);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new Engine(theShape); }

private:
    Shape theShape;
};

} // namespace

QIcon GlyphIcon::icon(Shape shape)
{
    return QIcon(new Engine(shape));
}

} // namespace tarnwick
