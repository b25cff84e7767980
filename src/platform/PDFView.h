#pragma once

#include "platform/PDFSelection.h"

#include <QAbstractScrollArea>
#include <QList>
#include <QPointF>

#include <memory>

class PDFDocument;
class PDFDocumentText;

/// Shows a document's pages one below the other, continuously scrolled.
///
/// Page images come from the engine as tiles, nearest first, kept in a cache of bounded size; a page
/// on its way shows its outline, one that cannot be drawn says so in its place. Keyboard, wheel,
/// mouse, touchpad, text selection, copying and links work as in the viewers people know.
///
/// Pages are counted from 0; positions on pages are in page space (PDFPageText).
class PDFView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit PDFView(QWidget* parent = nullptr);
    ~PDFView() override;

    /// Shows a document from its first page, or nothing. @param document open, borrowed; it may be
    /// destroyed while shown, the view is then empty. @param text its text for selection and copy,
    /// borrowed likewise; without it nothing can be selected.
    void setDocument(PDFDocument* document, PDFDocumentText* text);
    PDFDocument* document() const;

    /// Automatic scaling: pages fit the view's width now and after every resize, until the user
    /// zooms.
    void setAutoScales(bool on);
    bool autoScales() const;

    /// Magnification, 1 being 72 device-independent pixels per inch times the screen's logical DPI
    /// over 72 (actual size); within [0.05, 64].
    double scaleFactor() const;
    void setScaleFactor(double factor);

    /// Clockwise quarter turns of every page, 0 to 3.
    int rotation() const;

    /// The page that takes up most of the view, or -1 without pages.
    int currentPage() const;
    /// Scrolls a page's upper edge to the view's and remembers the jump for goBack(). Out of range:
    /// nothing happens.
    void goToPage(int page);
    void goToPoint(int page, const QPointF& point);
    bool canGoBack() const;
    bool canGoForward() const;

    const PDFSelection& currentSelection() const;
    /// Selects, drawing attention to the place by a short animation when asked.
    void setCurrentSelection(const PDFSelection& selection, bool animate);
    /// Scrolls so that the current selection's beginning is visible.
    void scrollSelectionToVisible();
    /// Matches of a search, drawn behind the selection.
    void setHighlights(const QList<PDFSelection>& matches);

public slots:
    void zoomIn();
    void zoomOut();
    void fitWidth();
    void fitPage();
    void actualSize();
    void rotateClockwise();
    void rotateCounterclockwise();
    void goToFirstPage();
    void goToLastPage();
    void goToNextPage();
    void goToPreviousPage();
    void goBack();
    void goForward();
    void selectAll();
    void copy();

signals:
    void currentPageChanged(int page);
    void scaleFactorChanged(double factor);
    void selectionChanged();
    void historyChanged();
    /// The document shown changed, or its page sizes did.
    void documentChanged();

private:
    class Private;
    std::unique_ptr<Private> d;
};
