#pragma once

#include "LinkFollower.h"
#include "PageDetails.h"
#include "PageMouse.h"
#include "PageNavigator.h"
#include "PageScrollBars.h"
#include "PageScroller.h"
#include "PageViewport.h"
#include "PageZoom.h"
#include "SelectableText.h"
#include "TextDrag.h"
#include "TextOverlay.h"
#include "TextReveal.h"
#include "TextSelector.h"
#include "TileLoader.h"
#include "pages/PDFView.h"
#include "pdf/PDFDocument.h"
#include "pdf/PDFDocumentText.h"

#include <QPointer>
#include <QTimer>

class QPainter;

namespace tarnwick {

/// The parts of a page view, each with its own state, and what they tell each other.
class PDFView::Private : public QObject, public ViewFrame, public SelectableText
{
public:
    explicit Private(PDFView* view);

    void setDocument(PDFDocument* document, PDFDocumentText* text);
    void paint(QPainter& painter, const QRect& exposed);
    /// What there is to read of a page, or why there is nothing.
    QString shownText(int page) const;
    /// Asks for the images of what shows, after a while.
    void wantSoon(int milliseconds = 0);
    /// Asks for texts and links of what shows, now.
    void wantDetails();

    // The frame that pages show in
    QSizeF size() const override;
    double pixelRatio() const override;
    double actualScale() const override;

    // The text that can be selected
    bool isThere() const override { return theText != nullptr; }
    int arrivedCount() const override;
    qsizetype lengthOf(int page) const override;
    void fetch() override;
    QString string(const PDFSelection& selection) const override;

    PDFView* q;
    QPointer<PDFDocument> theDocument;
    QPointer<PDFDocumentText> theText;
    std::function<void(PDFView*)> thePrintDelegate;
    std::function<QList<QRectF>(int page)> theMarkedAreas;

    TileLoader theTiles;
    PageDetails theDetails;
    PageViewport theViewport;
    PageScrollBars theBars;
    PageScroller theScroller;
    PageZoom theZoom;
    PageNavigator theNavigator;
    TextPlaces thePlaces;
    TextSelector theSelector;
    TextReveal theReveal;
    TextOverlay theOverlay;
    TextDrag theTextDrag;
    LinkFollower theLinks;
    PageMouse theMouse;

private:
    void connectLoaders();
    void connectScrolling();
    void connectSelecting();
    void watchDocument();
    void watchText();
    void forgetDocument();
    void takeMeasures(int first, int count);
    void wantTiles();
    void paintPage(QPainter& painter, int page, const QRect& exposed);
    void paintMarkedAreas(QPainter& painter, int page) const;

    QTimer theTilesTimer;
    QTimer theDetailsTimer;
};

} // namespace tarnwick
