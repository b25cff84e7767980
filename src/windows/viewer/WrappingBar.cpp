#include "WrappingBar.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <qdrawutil.h>

#include <algorithm>

namespace tarnwick {

namespace {

constexpr QMargins margins(6, 3, 6, 3);
constexpr int gap = 15; ///< between groups, with a line in its middle
constexpr int rowGap = 3;

} // namespace

WrappingBar::WrappingBar(QWidget* parent)
    : QFrame(parent)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QList<QWidget*> WrappingBar::groups() const
{
    QList<QWidget*> shown = findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    shown.removeIf([](const QWidget* group) { return group->isHidden(); });
    return shown;
}

/// Makes a row as high as its highest group, and lets those grow that want to.
void WrappingBar::finishRow(std::span<Place> row, int end)
{
    if (row.empty())
        return;
    int height = 0;
    for (const Place& place : row)
        height = std::max(height, place.area.height());
    int rest = std::max(end - row.back().area.right() - 1, 0);
    int shift = 0;
    for (Place& place : row) {
        place.area.translate(shift, 0);
        place.area.setHeight(height);
        if (!place.group->sizePolicy().expandingDirections().testFlag(Qt::Horizontal))
            continue;
        const int most = std::max(place.group->maximumWidth() - place.area.width(), 0);
        const int growth = std::min(rest, most);
        place.area.setWidth(place.area.width() + growth);
        shift += growth;
        rest -= growth;
    }
}

QList<WrappingBar::Place> WrappingBar::places(int width) const
{
    const int end = width - margins.right();
    QList<Place> all;
    qsizetype rowStart = 0;
    QPoint corner(margins.left(), margins.top());
    const auto endRow = [&] {
        finishRow(std::span(all).subspan(static_cast<std::size_t>(rowStart)), end);
        rowStart = all.size();
    };
    for (QWidget* group : groups()) {
        const QSize least = group->minimumSizeHint();
        QSize size = group->sizeHint().expandedTo(least);
        size.setWidth(std::max(least.width(), std::min(size.width(), end - margins.left())));
        if (corner.x() > margins.left() && corner.x() + size.width() > end) {
            endRow();
            corner = {margins.left(), all.constLast().area.bottom() + 1 + rowGap};
        }
        all.append({group, QRect(corner, size), all.size() == rowStart});
        corner.rx() += size.width() + gap;
    }
    endRow();
    return all;
}

int WrappingBar::heightForWidth(int width) const
{
    const QList<Place> all = places(width);
    return (all.isEmpty() ? margins.top() : all.constLast().area.bottom() + 1) + margins.bottom();
}

QSize WrappingBar::sizeHint() const
{
    int width = margins.left() + margins.right();
    const QList<QWidget*> shown = groups();
    for (const QWidget* group : shown)
        width += group->sizeHint().expandedTo(group->minimumSizeHint()).width() + gap;
    width -= shown.isEmpty() ? 0 : gap;
    return {width, heightForWidth(width)};
}

QSize WrappingBar::minimumSizeHint() const
{
    int widest = 0;
    for (const QWidget* group : groups())
        widest = std::max(widest, group->minimumSizeHint().width());
    return {widest + margins.left() + margins.right(), sizeHint().height()};
}

void WrappingBar::arrange()
{
    for (const Place& place : places(width()))
        place.group->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place.area));
    update();
}

bool WrappingBar::event(QEvent* event)
{
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::LayoutDirectionChange) {
        updateGeometry();
        arrange();
    }
    return QFrame::event(event);
}

void WrappingBar::resizeEvent(QResizeEvent* event)
{
    QFrame::resizeEvent(event);
    arrange();
}

void WrappingBar::paintEvent(QPaintEvent* event)
{
    QFrame::paintEvent(event);
    QPainter painter(this);
    for (const Place& place : places(width())) {
        if (place.isFirstOfRow)
            continue;
        const QRect line(place.area.left() - gap / 2 - 1, place.area.top(), 1, place.area.height());
        const QRect shown = QStyle::visualRect(layoutDirection(), rect(), line);
        qDrawShadeLine(&painter, shown.topLeft(), shown.bottomLeft(), palette(), true, 1, 0);
    }
}

} // namespace tarnwick
