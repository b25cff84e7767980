#include "PagePairPane.h"

#include "compared/DocumentComparison.h"
#include "document/Document.h"
#include "pages/PDFView.h"

#include <QKeyEvent>
#include <QLabel>
#include <QScopedValueRollback>
#include <QVBoxLayout>

#include <algorithm>

namespace tarnwick {

namespace {

constexpr int gap = 6; ///< pixels between the two
constexpr ComparedSide sides[] = {ComparedSide::isBefore, ComparedSide::isAfter};

ComparedSide otherOf(ComparedSide side)
{
    return side == ComparedSide::isBefore ? ComparedSide::isAfter : ComparedSide::isBefore;
}

} // namespace

PagePairPane::PagePairPane(QWidget* parent)
    : QWidget(parent)
{
    for (const ComparedSide side : sides)
        theParts[static_cast<std::size_t>(side)] = makePart(side);
    theParts[0].view->setAccessibleName(tr("Pages of the earlier document"));
    theParts[1].view->setAccessibleName(tr("Pages of the later document"));
    setFocusProxy(theParts[1].view);
}

PagePairPane::Part PagePairPane::makePart(ComparedSide side)
{
    Part part{new QWidget(this), new QLabel, new PDFView};
    part.whole->setAutoFillBackground(true);
    auto* const column = new QVBoxLayout(part.whole);
    column->setContentsMargins({});
    column->setSpacing(2);
    column->addWidget(part.name);
    column->addWidget(part.view, 1);
    part.name->setTextFormat(Qt::PlainText);
    part.name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    part.view->setAutoScales(true);
    part.view->installEventFilter(this);
    part.view->setMarkedAreas([this, side](int page) { return areasOn(side, page); });
    connect(part.view, &PDFView::scrolled, this, [this, side] { follow(side); });
    connect(part.view, &PDFView::scaleFactorChanged, this, [this, side] { followScale(side); });
    return part;
}

void PagePairPane::setComparison(
    DocumentComparison* comparison, const QString& before, const QString& after)
{
    theComparison = comparison;
    thePresentPair = -1;
    const QString names[] = {before, after};
    for (const ComparedSide side : sides) {
        Part& part = theParts[static_cast<std::size_t>(side)];
        part.name->setText(names[static_cast<std::size_t>(side)]);
        part.name->setToolTip(names[static_cast<std::size_t>(side)]);
        part.view->setDocument(comparison->document(side), nullptr);
    }
    connect(comparison, &DocumentComparison::pairCompared, this, [this] {
        for (const Part& part : theParts)
            part.view->viewport()->update();
    });
    connect(
        comparison, &DocumentComparison::paired, this, [this] { follow(ComparedSide::isAfter); });
}

void PagePairPane::clear()
{
    theComparison = nullptr;
    for (const Part& part : theParts)
        part.view->setDocument(nullptr, nullptr);
}

// --- What shows ----------------------------------------------------------------------------------

int PagePairPane::presentPair() const
{
    return thePresentPair;
}

void PagePairPane::showPair(int pair)
{
    if (!theComparison || pair < 0)
        return;
    const ComparedPage& page = theComparison->pages()[static_cast<std::size_t>(pair)];
    const ComparedSide side = page.isRemoved() ? ComparedSide::isBefore : ComparedSide::isAfter;
    const int number = page.isRemoved() ? page.pair.before : page.pair.after;
    constexpr double above = 60; // points that show above the change
    const double y = page.areas.empty() ? 0 : std::max(0.0, page.areas.front().top - above);
    const double width = theComparison->document(side)->pageSize(number).width();
    view(side)->showPlace({number, QPointF(width / 2, y)});
    follow(side); // the place may have been there already
    if (theMode == Mode::isByTurns && page.isRemoved() != (theShownSide == ComparedSide::isBefore)
        && (page.isRemoved() || page.isAdded()))
        turn();
}

/// The place in the other document that stands for one: on the page's partner the same; for a page
/// without one, the beginning of what follows the last one before it that has a partner.
PDFView::Place PagePairPane::partnerOf(ComparedSide side, const PDFView::Place& place) const
{
    const int last = theComparison->document(otherOf(side))->pageCount() - 1;
    for (int page = place.page; page >= 0; --page) {
        const int pair = theComparison->pairOf(side, page);
        if (pair < 0)
            return {std::min(place.page, last), place.point}; // nothing is known so far
        const PagePair& found = theComparison->pages()[static_cast<std::size_t>(pair)].pair;
        const int partner = side == ComparedSide::isBefore ? found.after : found.before;
        if (partner >= 0 && page == place.page)
            return {partner, place.point};
        if (partner >= 0)
            return {std::min(partner + 1, last), {place.point.x(), 0}};
    }
    return {0, {place.point.x(), 0}};
}

void PagePairPane::follow(ComparedSide side)
{
    if (isFollowing || !theComparison)
        return;
    const QScopedValueRollback guard(isFollowing, true);
    const PDFView::Place place = view(side)->topPlace();
    if (place.page < 0)
        return;
    PDFView* const other = view(otherOf(side));
    while (other->rotation() != view(side)->rotation())
        other->rotateClockwise();
    other->showPlace(partnerOf(side, place));
    const int pair = theComparison->pairOf(side, view(side)->currentPage());
    if (pair != thePresentPair) {
        thePresentPair = pair;
        emit presentPairChanged(pair);
    }
}

void PagePairPane::followScale(ComparedSide side)
{
    if (isFollowing)
        return;
    {
        const QScopedValueRollback guard(isFollowing, true);
        view(otherOf(side))->setScaleFactor(view(side)->scaleFactor());
    }
    follow(side);
}

QList<QRectF> PagePairPane::areasOn(ComparedSide side, int page) const
{
    const int pair = theComparison ? theComparison->pairOf(side, page) : -1;
    if (pair < 0)
        return {};
    const ComparedPage& compared = theComparison->pages()[static_cast<std::size_t>(pair)];
    const QSizeF size = theComparison->document(side)->pageSize(page);
    if (compared.isAdded() || compared.isRemoved())
        return {QRectF(QPointF(), size)};
    QList<QRectF> areas;
    for (const PictureArea& area : compared.areas)
        areas.append(QRectF(QPointF(area.left, area.top), QPointF(area.right, area.bottom))
                         .intersected(QRectF(QPointF(), size)));
    return areas;
}

// --- Side by side and by turns -------------------------------------------------------------------

void PagePairPane::setMode(Mode mode)
{
    theMode = mode;
    place();
}

void PagePairPane::turn()
{
    theShownSide = otherOf(theShownSide);
    const bool hadFocus = view(otherOf(theShownSide))->hasFocus();
    place();
    if (hadFocus)
        view(theShownSide)->setFocus(Qt::OtherFocusReason);
}

void PagePairPane::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    place();
}

/// By turns both lie in one place, and both stay drawn: the one behind is there at once.
void PagePairPane::place()
{
    const bool isByTurns = theMode == Mode::isByTurns;
    const int half = (width() - gap) / 2;
    const QRect left(0, 0, isByTurns ? width() : half, height());
    const QRect right = isByTurns ? left : QRect(width() - half, 0, half, height());
    {
        const QScopedValueRollback guard(isFollowing, true);
        theParts[0].whole->setGeometry(left);
        theParts[1].whole->setGeometry(right);
    }
    theParts[static_cast<std::size_t>(isByTurns ? theShownSide : ComparedSide::isAfter)]
        .whole->raise();
    // The one that fits its pages into the width, if one does, has the other follow.
    const bool isLeftFirst = theParts[0].view->autoScales() && !theParts[1].view->autoScales();
    followScale(isLeftFirst ? ComparedSide::isBefore : ComparedSide::isAfter);
}

bool PagePairPane::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride) {
        const auto* const key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Space && key->modifiers() == Qt::NoModifier) {
            if (event->type() == QEvent::KeyPress)
                emit turnWanted();
            else
                event->accept();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace tarnwick
