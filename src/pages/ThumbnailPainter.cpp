#include "ThumbnailPainter.h"

#include <QPainter>
#include <QPolygonF>
#include <QWidget>

#include <algorithm>

namespace tarnwick {

void ThumbnailPainter::paintLabel(QPainter& painter, const QWidget& strip, const QString& whole,
    const QRect& area, bool isCurrent)
{
    const QFontMetrics metrics = strip.fontMetrics();
    const QString label = metrics.elidedText(whole, Qt::ElideMiddle, area.width() - 8);
    const QPalette& colours = strip.palette();
    painter.save();
    if (isCurrent) {
        QRect pill(0, 0, metrics.horizontalAdvance(label) + 12, metrics.height());
        pill.moveCenter(area.center());
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colours.color(QPalette::Highlight));
        painter.drawRoundedRect(pill, pill.height() / 2.0, pill.height() / 2.0);
    }
    painter.setPen(colours.color(isCurrent ? QPalette::HighlightedText : QPalette::WindowText));
    painter.drawText(area, Qt::AlignCenter, label);
    painter.restore();
}

void ThumbnailPainter::paintMark(QPainter& painter, const QRect& paper)
{
    const double width = std::clamp(paper.width() / 7.0, 6.0, 16.0);
    const double left = paper.right() - 1.6 * width;
    const double top = paper.top() - 2;
    const double height = 1.7 * width;
    const QPolygonF ribbon{
        QList<QPointF>{{left, top}, {left + width, top}, {left + width, top + height},
            {left + width / 2, top + height - width / 2}, {left, top + height}}};
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(120, 20, 20), 1));
    painter.setBrush(QColor(214, 48, 49));
    painter.drawPolygon(ribbon);
    painter.restore();
}

} // namespace tarnwick
