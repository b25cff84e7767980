// The part of PlainTextView that shows where something is missing from the text.
#include "text/PlainTextView.h"

#include "LinkPointer.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>

namespace tarnwick {

void PlainTextView::setGaps(const QList<Gap>& gaps, const QStringList& missing)
{
    theGaps.clear();
    theMissing = missing;
    std::vector<qsizetype> lines;
    for (const Gap& gap : gaps) {
        if (!lines.empty() && lines.back() == gap.line) {
            theGaps.last().note += u' ' % gap.note;
            continue;
        }
        lines.push_back(gap.line);
        theGaps.append(gap);
    }
    theLayout.setGaps(std::move(lines));
    relayout();
}

QString PlainTextView::gapNoteAt(const QPointF& viewportPoint) const
{
    QString note;
    theLayout.forEachVisibleGap([&](std::size_t gap, qreal y) {
        if (viewportPoint.y() >= y && viewportPoint.y() < y + theLayout.rowHeight())
            note = theGaps.at(static_cast<qsizetype>(gap)).note;
    });
    return note;
}

/// The note is shortened to the view's width; the tool tip has all of it.
void PlainTextView::paintGap(QPainter& painter, const QString& note, qreal y) const
{
    constexpr QColor warning(255, 170, 0);
    const QRectF row(0, y, viewport()->width(), theLayout.rowHeight());
    QColor shade = warning;
    shade.setAlphaF(0.22f);
    painter.fillRect(row, shade);
    painter.fillRect(QRectF(row.topLeft(), QSizeF(3, row.height())), warning);
    const QRectF inside = row.adjusted(TextViewLayout::margin + 4, 0, -TextViewLayout::margin, 0);
    painter.save();
    painter.setFont(theLayout.font());
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(inside, Qt::AlignVCenter | Qt::AlignLeft,
        painter.fontMetrics().elidedText(note, Qt::ElideRight, static_cast<int>(inside.width())));
    painter.restore();
}

bool PlainTextView::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::Leave && theLinkPointer->leave())
        viewport()->update();
    if (event->type() != QEvent::ToolTip)
        return QAbstractScrollArea::viewportEvent(event);
    const auto* const help = static_cast<QHelpEvent*>(event);
    const QString note = gapNoteAt(help->pos());
    if (note.isEmpty())
        return QAbstractScrollArea::viewportEvent(event);
    QToolTip::showText(help->globalPos(), u"<p>" % note.toHtmlEscaped() % u"</p>", viewport());
    return true;
}

} // namespace tarnwick
