#pragma once

#include "PageDetails.h"
#include "PageGeometry.h"
#include "SmoothScroll.h"
#include "TileLoader.h"
#include "ViewHistory.h"
#include "pages/PDFView.h"
#include "pdf/PDFDocument.h"
#include "pdf/PDFDocumentText.h"
#include "pdf/PageTextGeometry.h"

#include <QPointer>
#include <QTimer>
#include <QVariantAnimation>

#include <optional>

class QMenu;
class QPainter;

namespace tarnwick {

/// What a page view consists of; its functions stand by topic in the PDFView*.cpp files.
class PDFView::Private : public QObject
{
public:
    explicit Private(PDFView* view);

    static constexpr double smallestFactor = 0.05;
    static constexpr double largestFactor = 64;

    enum class Fit
    {
        isFree, ///< the user has chosen the scale
        isWidth,
        isPage,
    };
    /// What the left button is doing.
    enum class Drag
    {
        isNone,
        isHand,
        isCharacters,
        isWords,
        isLines,
        isLink, ///< pressed on a link and not moved away yet
    };
    enum class Stride
    {
        isLine,
        isView,
    };

    // The document (PDFView.cpp)
    void watchDocument();
    void watchText();
    void takeMeasures(int first, int count);

    // Scrolling and scale (PDFViewScrolling.cpp)
    QPointF content(const QPointF& inView) const { return inView + theOrigin; }
    QPointF inView(const QPointF& content) const { return content - theOrigin; }
    QSizeF viewSize() const;
    double actualScale() const; ///< pixels for a point at factor 1
    PageGeometry::PageRange shownPages() const;
    /// Shows a place, whatever way the view was on.
    /// @param target page that a jump leads to: the present one, even where another shows as much.
    void scrollTo(const QPointF& origin, int target = -1);
    /// Moves the view on its way, of which what is left is still to be gone.
    void moveTo(const QPointF& origin, int target = -1);
    void stride(Stride stride, int direction);
    void updateBars();
    void takeBars();
    void recordJump();
    /// Shows a page from its upper edge.
    void showPage(int page);
    void showPlace(const PagePlace& place);
    PagePlace presentPlace() const;
    void setScale(double factor, const QPointF& pointInView);
    void zoomBy(double by, const QPointF& pointInView);
    void applyFit();
    void setFit(Fit fit);
    void rotateBy(int quarterTurns);
    void updateCurrentPage(int target);
    double shownHeight(int page) const;

    // Tiles (PDFViewPaint.cpp)
    double deviceScale() const; ///< device pixels for a point
    QPoint deviceOrigin(int page) const;
    void wantSoon(int milliseconds = 0);
    void wantTiles();
    QList<TileKey> tilesToWant(const PageGeometry::PageRange& shown) const;
    void paint(QPainter& painter, const QRect& exposed);
    void paintOverlays(QPainter& painter, int page, const QRect& exposed);
    QPolygonF polygonInView(int page, const QPolygonF& polygon) const;

    // Selection (PDFViewSelection.cpp)
    void setEnds(const PDFTextPosition& anchor, const PDFTextPosition& focus);
    void selectBetweenEnds();
    void takeSelection(const PDFSelection& selection);
    qsizetype lengthOfPage(int page) const;
    bool selectionIsWhole() const;
    std::optional<PDFTextPosition> positionAt(const QPointF& inView) const;
    bool textIsAt(const QPointF& inView) const;
    PDFSelection::Range unitAt(const PDFTextPosition& place) const;
    void startSelecting(const QPointF& inView, Drag unit, bool extends);
    void dragSelection(const QPointF& inView);
    void offerPrimarySelection();
    void finishCopy();
    void reveal();
    void animateSelection();

    // Mouse and links (PDFViewInput.cpp)
    std::optional<PDFLink> linkAt(const QPointF& inView) const;
    void updateCursor(const QPointF& inView);
    void press(QMouseEvent* event);
    void fillMenu(QMenu* menu, const QPoint& position);
    void openAddress(const QUrl& url);
    bool pinch(QEvent* event);

    PDFView* q;
    QPointer<PDFDocument> theDocument;
    QPointer<PDFDocumentText> theText;
    PageGeometry theGeometry;
    TileLoader theTiles;
    PageDetails theDetails;
    ViewHistory theHistory;
    std::function<void(PDFView*)> thePrintDelegate;

    Fit theFit = Fit::isWidth;
    QPointF theOrigin; ///< what lies in the view's upper left corner, in content space
    double theBarUnit = 1; ///< pixels for a step of the vertical scroll bar
    bool theBarsAreBeingSet = false;
    int theCurrentPage = -1;
    QTimer theWantTimer;
    QTimer theDetailsTimer;
    SmoothScroll theGlide;

    PDFSelection theSelection;
    PDFTextPosition theAnchor;
    PDFTextPosition theFocus;
    bool theEndsAreSet = false;
    bool theCopyWaits = false;
    bool theRevealWaits = false;
    QTimer theSelectionTimer; ///< gathers pages' texts that arrive while they are selected
    QList<PDFSelection> theHighlights;
    QVariantAnimation thePulse;

    Drag theDrag = Drag::isNone;
    QPointF theDragStart;
    QPointF theLastMouse;
    PDFSelection::Range theDragUnit; ///< word or line that the drag began with
    PDFLink thePressedLink;
    QTimer theAutoScroll;
    QElapsedTimer theSinceDoubleClick;
    double theWheelZoom = 0; ///< degrees of the wheel that have not made a step yet
};

} // namespace tarnwick
