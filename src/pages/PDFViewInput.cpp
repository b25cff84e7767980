#include "PDFViewPrivate.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDesktopServices>
#include <QGestureEvent>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>

#include <cmath>

namespace tarnwick {

namespace {

constexpr double notch = 120; ///< eighths of a degree of one step of a wheel
constexpr int mostLinksInMenu = 30;

bool isOpenable(const QUrl& url)
{
    const QString scheme = url.scheme().toLower();
    return scheme == u"http" || scheme == u"https" || scheme == u"mailto";
}

QString menuText(const PDFLink& link)
{
    if (link.page >= 0)
        return PDFView::tr("Page %1").arg(link.page + 1);
    QString text = link.url.toDisplayString().left(60);
    return text.replace(u'&', u"&&"_qs);
}

} // namespace

void PDFView::wheelEvent(QWheelEvent* event)
{
    const QPointF pixels = event->pixelDelta();
    const QPointF angle = event->angleDelta();
    event->accept();
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        const double steps = angle.y() / notch;
        return d->zoomBy(std::pow(1.15, steps), event->position());
    }
    if (!pixels.isNull() && event->source() != Qt::MouseEventSynthesizedBySystem)
        return d->scrollTo(d->theOrigin - pixels);
    const double perNotch = QApplication::wheelScrollLines() * 32.0;
    QPointF by = -angle / notch * perNotch;
    if (event->modifiers().testFlag(Qt::ShiftModifier) && by.x() == 0)
        by = by.transposed();
    d->theGlide.add(by);
}

void PDFView::keyPressEvent(QKeyEvent* event)
{
    const bool isShifted = event->modifiers().testFlag(Qt::ShiftModifier);
    using Stride = Private::Stride;
    if (event->matches(QKeySequence::Copy))
        return copy();
    if (event->matches(QKeySequence::SelectAll))
        return selectAll();
    if (event->matches(QKeySequence::ZoomIn))
        return zoomIn();
    if (event->matches(QKeySequence::ZoomOut))
        return zoomOut();
    if (event->matches(QKeySequence::Back))
        return goBack();
    if (event->matches(QKeySequence::Forward))
        return goForward();
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
        return d->stride(Stride::isLine, event->key() == Qt::Key_Up ? -1 : 1);
    case Qt::Key_Left:
    case Qt::Key_Right: {
        const int direction = event->key() == Qt::Key_Left ? -1 : 1;
        if (horizontalScrollBar()->maximum() > 0)
            return d->theGlide.add({48.0 * direction, 0});
        return direction < 0 ? goToPreviousPage() : goToNextPage();
    }
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return d->stride(Stride::isView, event->key() == Qt::Key_PageUp ? -1 : 1);
    case Qt::Key_Space:
        return d->stride(Stride::isView, isShifted ? -1 : 1);
    case Qt::Key_Home:
        return goToFirstPage();
    case Qt::Key_End:
        return goToLastPage();
    case Qt::Key_0:
        if (event->modifiers().testFlag(Qt::ControlModifier))
            return actualSize();
        break;
    case Qt::Key_Escape:
        if (!d->theSelection.isEmpty())
            return setCurrentSelection({}, false);
        break;
    default:
        break;
    }
    QAbstractScrollArea::keyPressEvent(event);
}

std::optional<PDFLink> PDFView::Private::linkAt(const QPointF& inView) const
{
    if (theGeometry.pageCount() == 0)
        return std::nullopt;
    const PagePlace place = theGeometry.placeAt(content(inView));
    for (const PDFLink& link : theDetails.links(place.page)) {
        if (link.area.contains(place.point))
            return link;
    }
    return std::nullopt;
}

void PDFView::Private::updateCursor(const QPointF& inView)
{
    Qt::CursorShape shape = Qt::ArrowCursor;
    if (theDrag == Drag::isHand)
        shape = Qt::ClosedHandCursor;
    else if (theDrag == Drag::isLink || (theDrag == Drag::isNone && linkAt(inView)))
        shape = Qt::PointingHandCursor;
    else if (theDrag != Drag::isNone || textIsAt(inView))
        shape = Qt::IBeamCursor;
    if (q->viewport()->cursor().shape() != shape)
        q->viewport()->setCursor(shape);
}

void PDFView::mousePressEvent(QMouseEvent* event)
{
    d->theGlide.stop();
    d->press(event);
    d->updateCursor(event->position());
}

void PDFView::Private::press(QMouseEvent* event)
{
    theDragStart = event->position();
    theLastMouse = event->position();
    if (event->button() == Qt::MiddleButton)
        theDrag = Drag::isHand;
    if (event->button() == Qt::BackButton)
        q->goBack();
    if (event->button() == Qt::ForwardButton)
        q->goForward();
    if (event->button() != Qt::LeftButton)
        return;
    if (theSinceDoubleClick.isValid()
        && theSinceDoubleClick.elapsed() < QApplication::doubleClickInterval())
        return startSelecting(event->position(), Drag::isLines, false);
    const std::optional<PDFLink> link = linkAt(event->position());
    if (link) {
        thePressedLink = *link;
        theDrag = Drag::isLink;
        return;
    }
    startSelecting(
        event->position(), Drag::isCharacters, event->modifiers().testFlag(Qt::ShiftModifier));
    // A page without text, as a scan is, can only be meant to be moved.
    const PagePlace place = theGeometry.placeAt(content(event->position()));
    const PDFPageText* const text
        = theGeometry.pageCount() > 0 ? theDetails.text(place.page) : nullptr;
    if (theDrag == Drag::isNone || (text && text->string.trimmed().isEmpty()))
        theDrag = Drag::isHand;
}

void PDFView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return mousePressEvent(event);
    d->theGlide.stop();
    d->theSinceDoubleClick.start();
    d->startSelecting(event->position(), Private::Drag::isWords, false);
}

void PDFView::mouseMoveEvent(QMouseEvent* event)
{
    const QPointF moved = event->position() - d->theLastMouse;
    d->theLastMouse = event->position();
    const bool isFar = (event->position() - d->theDragStart).manhattanLength()
        >= QApplication::startDragDistance();
    switch (d->theDrag) {
    case Private::Drag::isNone:
        break;
    case Private::Drag::isHand:
        d->moveTo(d->theOrigin - moved);
        break;
    case Private::Drag::isLink:
        if (isFar)
            d->startSelecting(d->theDragStart, Private::Drag::isCharacters, false);
        break;
    case Private::Drag::isCharacters:
    case Private::Drag::isWords:
    case Private::Drag::isLines:
        d->dragSelection(event->position());
        break;
    }
    d->updateCursor(event->position());
}

void PDFView::mouseReleaseEvent(QMouseEvent* event)
{
    const Private::Drag drag = std::exchange(d->theDrag, Private::Drag::isNone);
    d->theAutoScroll.stop();
    d->updateCursor(event->position());
    if (drag == Private::Drag::isLink)
        return followLink(d->thePressedLink);
    if (drag != Private::Drag::isNone && drag != Private::Drag::isHand)
        d->offerPrimarySelection();
}

void PDFView::followLink(const PDFLink& link)
{
    if (link.page >= 0)
        return goToPoint(link.page, link.point);
    if (isOpenable(link.url))
        return d->openAddress(link.url);
    auto* const box = new QMessageBox(QMessageBox::Information, tr("Link"),
        tr("This link leads to a file or a program."), QMessageBox::Ok, this);
    box->setInformativeText(
        tr("Such links are never followed:\n%1").arg(link.url.toDisplayString().left(500)));
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void PDFView::Private::openAddress(const QUrl& url)
{
    auto* const box = new QMessageBox(QMessageBox::Question, PDFView::tr("Open Link"),
        PDFView::tr("Open this address outside of the document?"), QMessageBox::Cancel, q);
    box->setTextFormat(Qt::PlainText);
    // As it will be sent, so that no look-alike letter passes for another.
    box->setInformativeText(QString::fromLatin1(url.toEncoded().left(1000)));
    const QPushButton* const open = box->addButton(PDFView::tr("&Open"), QMessageBox::AcceptRole);
    box->setDefaultButton(QMessageBox::Cancel);
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QMessageBox::buttonClicked, box, [open, url](const QAbstractButton* button) {
        if (static_cast<const void*>(button) == static_cast<const void*>(open))
            QDesktopServices::openUrl(url);
    });
    box->open();
}

void PDFView::contextMenuEvent(QContextMenuEvent* event)
{
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    d->fillMenu(menu, event->pos());
    menu->popup(event->globalPos());
}

void PDFView::Private::fillMenu(QMenu* menu, const QPoint& position)
{
    const auto add
        = [this, menu](const QString& text, const char* command, void (PDFView::*slot)()) {
              QAction* const action = menu->addAction(text, q, slot);
              action->setEnabled(q->validateCommand(QString::fromLatin1(command)));
          };
    if (const std::optional<PDFLink> link = linkAt(position); link && !link->url.isEmpty()) {
        menu->addAction(PDFView::tr("Copy Link &Address"), q,
            [url = link->url] { QApplication::clipboard()->setText(url.toString()); });
        menu->addSeparator();
    }
    add(PDFView::tr("&Copy"), "copy", &PDFView::copy);
    add(PDFView::tr("Select &All"), "selectAll", &PDFView::selectAll);
    menu->addSeparator();
    add(PDFView::tr("&Back"), "goBack", &PDFView::goBack);
    add(PDFView::tr("&Forward"), "goForward", &PDFView::goForward);
    menu->addSeparator();
    add(PDFView::tr("Zoom &In"), "zoomIn", &PDFView::zoomIn);
    add(PDFView::tr("Zoom &Out"), "zoomOut", &PDFView::zoomOut);
    add(PDFView::tr("Fit &Width"), "fitWidth", &PDFView::fitWidth);
    add(PDFView::tr("Fit &Page"), "fitPage", &PDFView::fitPage);
    add(PDFView::tr("Actual &Size"), "actualSize", &PDFView::actualSize);
    const QList<PDFLink> links
        = theCurrentPage < 0 ? QList<PDFLink>() : theDetails.links(theCurrentPage);
    if (links.isEmpty())
        return;
    menu->addSeparator();
    // The way to a link without a mouse.
    QMenu* const linkMenu = menu->addMenu(PDFView::tr("&Links on This Page"));
    for (const PDFLink& link : links.first(std::min<qsizetype>(links.size(), mostLinksInMenu)))
        linkMenu->addAction(menuText(link), q, [this, link] { q->followLink(link); });
}

bool PDFView::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::NativeGesture || event->type() == QEvent::Gesture) {
        if (d->pinch(event))
            return true;
    }
    if (event->type() == QEvent::ToolTip) {
        const auto* const help = static_cast<QHelpEvent*>(event);
        const std::optional<PDFLink> link = d->linkAt(help->pos());
        if (!link)
            QToolTip::hideText();
        else
            QToolTip::showText(help->globalPos(),
                (link->page >= 0 ? tr("Page %1").arg(link->page + 1)
                                 : link->url.toDisplayString().left(200).toHtmlEscaped()),
                viewport());
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

bool PDFView::Private::pinch(QEvent* event)
{
    if (event->type() == QEvent::NativeGesture) {
        const auto* const gesture = static_cast<QNativeGestureEvent*>(event);
        if (gesture->gestureType() != Qt::ZoomNativeGesture)
            return false;
        zoomBy(std::max(0.1, 1 + gesture->value()), gesture->position());
        return true;
    }
    QGesture* const gesture = static_cast<QGestureEvent*>(event)->gesture(Qt::PinchGesture);
    const auto* const pinch = qobject_cast<QPinchGesture*>(gesture);
    if (!pinch)
        return false;
    zoomBy(std::max(0.1, pinch->scaleFactor()),
        q->viewport()->mapFromGlobal(pinch->centerPoint().toPoint()));
    return true;
}

} // namespace tarnwick
