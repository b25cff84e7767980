#include "frame/ElidedLabel.h"

#include <QStylePainter>

namespace tarnwick {

ElidedLabel::ElidedLabel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setMinimumWidth(10);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

void ElidedLabel::setWhole(const QString& text)
{
    setText(text);
    setToolTip(text);
    setAccessibleName(text);
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    const QRect area = contentsRect();
    QStylePainter painter(this);
    painter.drawItemText(area, Qt::AlignLeading | Qt::AlignVCenter, palette(), isEnabled(),
        fontMetrics().elidedText(text(), Qt::ElideRight, area.width()), foregroundRole());
}

} // namespace tarnwick
