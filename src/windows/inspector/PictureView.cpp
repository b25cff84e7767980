#include "PictureView.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr int square = 8; ///< pixels
constexpr int margin = 4;

/// What shows through transparent places: seen on light and dark windows alike.
void paintSquares(QPainter& painter, const QRect& area)
{
    painter.fillRect(area, QColor(0xFF, 0xFF, 0xFF));
    painter.save();
    painter.setClipRect(area);
    for (int y = area.top(); y <= area.bottom(); y += square) {
        const int shift = (y - area.top()) / square % 2 * square;
        for (int x = area.left() + shift; x <= area.right(); x += 2 * square)
            painter.fillRect(x, y, square, square, QColor(0xD0, 0xD0, 0xD0));
    }
    painter.restore();
}

} // namespace

PictureView::PictureView(QWidget* parent)
    : QFrame(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setFrameShape(QFrame::StyledPanel);
    setMinimumSize(40, 40);
    setImage({});
}

void PictureView::setImage(const QImage& image)
{
    theImage = image;
    setAccessibleName(tr("Stream as picture"));
    setAccessibleDescription(image.isNull()
            ? QString()
            : tr("%1 × %2 pixels shown").arg(image.width()).arg(image.height()));
    reduce();
}

/// In device pixels an image is shown no larger than it is.
QRect PictureView::place() const
{
    const QRect room = contentsRect().adjusted(margin, margin, -margin, -margin);
    QSizeF size = QSizeF(theImage.size()) / devicePixelRatioF();
    if (size.width() > room.width() || size.height() > room.height())
        size.scale(room.size(), Qt::KeepAspectRatio);
    const QSize whole = size.toSize().expandedTo({1, 1}).boundedTo(room.size());
    return {room.center() - QPoint((whole.width() - 1) / 2, (whole.height() - 1) / 2), whole};
}

void PictureView::reduce()
{
    theReduced = {};
    theReducing.abandon();
    update();
    const QSize wanted = place().size() * devicePixelRatioF();
    if (theImage.isNull() || wanted.isEmpty())
        return;
    theReducing.start(
        [image = theImage, wanted] {
            return image.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        },
        [this](const QImage& reduced) {
            theReduced = reduced;
            update();
        });
}

void PictureView::paintEvent(QPaintEvent* event)
{
    QFrame::paintEvent(event);
    QPainter painter(this);
    if (!theImage.isNull()) {
        const QRect area = place();
        paintSquares(painter, area);
        painter.drawImage(area, theReduced.isNull() ? theImage : theReduced);
    }
    if (hasFocus()) {
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

void PictureView::resizeEvent(QResizeEvent* event)
{
    QFrame::resizeEvent(event);
    reduce();
}

bool PictureView::validateCommand(const QString& command) const
{
    return command != "copy"_L1 || !theImage.isNull();
}

void PictureView::copy()
{
    if (!theImage.isNull())
        QApplication::clipboard()->setImage(theImage.copy());
}

void PictureView::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu menu(this);
    QAction* const copying = menu.addAction(tr("&Copy Picture"), this, &PictureView::copy);
    copying->setShortcut(QKeySequence::Copy);
    QAction* const saving
        = menu.addAction(tr("&Save Picture as PNG…"), this, &PictureView::saveWanted);
    for (QAction* const action : {copying, saving})
        action->setEnabled(!theImage.isNull());
    menu.exec(event->reason() == QContextMenuEvent::Keyboard ? mapToGlobal(rect().center())
                                                             : event->globalPos());
}

void PictureView::keyPressEvent(QKeyEvent* event)
{
    if (event == QKeySequence::Copy)
        copy();
    else
        QFrame::keyPressEvent(event);
}

} // namespace tarnwick
