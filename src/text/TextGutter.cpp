#include "TextGutter.h"

#include <QMouseEvent>
#include <QPainter>

#include <utility>

namespace tarnwick {

TextGutter::TextGutter(Paint paint, QWidget* parent)
    : QWidget(parent)
    , thePaint(std::move(paint))
{
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
}

TextGutter::Label TextGutter::labelOf(const TextStorage& storage, qsizetype index)
{
    Label label{QString::number(index + 1), {}};
    // An empty line of a listing stands for no bytes of the file.
    const std::optional<std::size_t> offset
        = storage.lineLength(index) > 0 ? storage.lineOffset(index) : std::nullopt;
    if (offset)
        label.offset = QString::number(qulonglong{*offset});
    return label;
}

void TextGutter::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    thePaint(painter);
}

// The view behind it would take these for its own, at another place.
void TextGutter::mousePressEvent(QMouseEvent* event)
{
    event->accept();
}

void TextGutter::mouseDoubleClickEvent(QMouseEvent* event)
{
    event->accept();
}

} // namespace tarnwick
