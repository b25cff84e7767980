// The part of PlainTextView that tells the numbers and offsets of lines.
#include "text/PlainTextView.h"

#include "TextGutter.h"
#include "settings/StoredValues.h"
#include "text/FindBar.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QSettings>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

const QString shownKey = u"view/lineNumbersAndOffsets"_s;
/// Room that is kept for digits, so that the text does not move when longer ones come into view.
constexpr qsizetype leastNumberDigits = 4;
constexpr qsizetype leastOffsetDigits = 8;
constexpr qreal space = 6; ///< pixels beside and between the columns

} // namespace

void PlainTextView::setGutter(Gutter gutter)
{
    theGutterKind = gutter;
    showGutter(gutter != Gutter::isNone && StoredValues::flag(shownKey));
}

void PlainTextView::toggleGutter()
{
    if (theGutterKind == Gutter::isNone)
        return;
    const bool isShown = !theGutter;
    QSettings().setValue(shownKey, isShown);
    QList<PlainTextView*> views; // a gutter that goes is one of all widgets itself
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* widget : widgets) {
        auto* const view = qobject_cast<PlainTextView*>(widget);
        if (view && view->theGutterKind != Gutter::isNone)
            views << view;
    }
    for (PlainTextView* view : std::as_const(views))
        view->showGutter(isShown);
}

void PlainTextView::showGutter(bool show)
{
    if (show == (theGutter != nullptr))
        return;
    delete theGutter;
    theGutter = nullptr;
    if (show) {
        theGutter = new TextGutter([this](QPainter& painter) { paintGutter(painter); }, this);
        theGutter->setToolTip(theGutterKind == Gutter::isOffsets
                ? tr("Offset in the file, decimal")
                : tr("Line number, and where the line begins in the file"));
        theGutter->show();
    }
    theGutterDigits = 0;
    placeMargins();
}

/// Makes room for what is shown beside the text, and puts it there.
void PlainTextView::placeMargins()
{
    const int left = static_cast<int>(std::ceil(gutterWidth()));
    const int below = isFindBarOpen() ? theFindBar->sizeHint().height() : 0;
    if (viewportMargins() != QMargins(left, 0, 0, below))
        setViewportMargins(left, 0, 0, below);
    placeFindBar();
    if (!theGutter)
        return;
    const QRect text = viewport()->geometry();
    theGutter->setGeometry(text.x() - left, text.y(), left, text.height()); // in any direction
}

PlainTextView::GutterColumns PlainTextView::gutterColumns() const
{
    const auto digits = [this](qsizetype count) {
        return static_cast<qreal>(count) * theLayout.characterWidth();
    };
    GutterColumns columns;
    if (theGutterKind == Gutter::isLinesAndOffsets) {
        const qsizetype count = QString::number(theStorage->lineCount()).size();
        columns.numberRight = space + digits(std::max(leastNumberDigits, count));
    }
    columns.offsetRight
        = columns.numberRight + space + digits(std::max(leastOffsetDigits, theGutterDigits));
    return columns;
}

qreal PlainTextView::gutterWidth() const
{
    return theGutter ? gutterColumns().offsetRight + space : 0;
}

/// Follows what shows, and what its offsets take.
void PlainTextView::updateGutter()
{
    if (!theGutter)
        return;
    qsizetype longest = theGutterDigits;
    theLayout.forEachVisible([this, &longest](const TextSegment& segment, QPointF) {
        longest = std::max(longest, TextGutter::labelOf(*theStorage, segment.line).offset.size());
    });
    theGutterDigits = longest;
    placeMargins();
    theGutter->update();
}

void PlainTextView::paintGutter(QPainter& painter) const
{
    const QFont font = theLayout.font();
    const QFontMetricsF metrics(font);
    const GutterColumns columns = gutterColumns();
    painter.setFont(font);
    painter.setPen(theColours.aside());
    const qreal baseline = std::round(metrics.ascent() + metrics.leading() / 2);
    const auto draw = [&](const QString& digits, qreal right, qreal y) {
        painter.drawText(QPointF(right - metrics.horizontalAdvance(digits), y + baseline), digits);
    };
    qsizetype told = -1;
    theLayout.forEachVisible([&](const TextSegment& segment, QPointF origin) {
        // Of a line that is wrapped, its first row; of one that is not, whatever part shows.
        if (isWrapping() ? segment.start > 0 : segment.line == told)
            return;
        told = segment.line;
        const TextGutter::Label label = TextGutter::labelOf(*theStorage, segment.line);
        if (theGutterKind == Gutter::isLinesAndOffsets)
            draw(label.number, columns.numberRight, origin.y());
        draw(label.offset, columns.offsetRight, origin.y());
    });
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(QPointF(theGutter->width() - 0.5, 0),
        QPointF(theGutter->width() - 0.5, theGutter->height()));
}

} // namespace tarnwick
