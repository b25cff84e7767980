#pragma once

#include "pdf/PDFSelection.h"

#include <QAbstractScrollArea>
#include <QList>
#include <QPointF>
#include <QRectF>

#include <functional>
#include <memory>

class QMenu;

namespace tarnwick {

class PDFDocument;
class PDFDocumentText;
struct PDFLink;

/// Shows a document's pages one below the other, continuously scrolled.
///
/// Page images come from the engine as tiles, nearest first, kept in a cache of bounded size; a
/// page on its way shows its outline, one that cannot be drawn says so in its place. Keyboard,
/// wheel, mouse, touchpad, text selection, copying and links work as in the viewers people know.
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
    /// Matches of a search, in document order, drawn behind the selection.
    void setHighlights(const QList<PDFSelection>& matches);

    /// What stands at the view's upper edge, in the middle.
    struct Place
    {
        int page = -1; ///< -1 without pages
        QPointF point; ///< in page space
    };
    Place topPlace() const;
    /// Brings a place there. That is no jump: goBack() knows nothing of it.
    void showPlace(const Place& place);
    /// Areas of pages that are framed, in page space: asked for each page that is painted.
    void setMarkedAreas(std::function<QList<QRectF>(int page)> areas);

    /// Who prints when the user asks the view to, with a document in it; without one it does not.
    void setPrintDelegate(std::function<void(PDFView* view)> delegate);

    /// Whether a command of the slots below is possible now.
    Q_INVOKABLE bool validateCommand(const QString& command) const;

    /// What a screen reader is told: name of the present page, and its text as far as it is known.
    QString currentPageName() const;
    QString currentPageText() const;
    /// Where a character of that text shows, in the viewport; null where that is not known.
    QRect characterRect(qsizetype index) const;
    /// The character of the present page under a point of the viewport, or -1.
    qsizetype characterAt(const QPoint& point) const;

    /// Bytes of page images held at present; never more than tileLimit, but for a single tile.
    qsizetype tileBytes() const;
    static constexpr qsizetype tileLimit = 128 * 1024 * 1024;

    /// Whether page images are on their way; what is less urgent waits meanwhile.
    bool isDrawing() const;

    /// Opens a link's target as clicking it does: pages at once, web and mail addresses after the
    /// user has seen the address and said yes, files and programs never.
    void followLink(const PDFLink& link);

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
    /// Copies the selected text; when parts of it are still to be fetched, once they are there.
    void copy();
    void print();

signals:
    void currentPageChanged(int page);
    void scaleFactorChanged(double factor);
    /// Another place stands at the upper edge now, or may.
    void scrolled();
    void selectionChanged();
    void historyChanged();
    void drawingChanged(bool isDrawing);
    /// The document shown changed, or its page sizes did.
    void documentChanged();
    /// A context menu is about to open. @param page where it was asked for; -1 without pages.
    void contextMenuOpening(QMenu* menu, int page);

protected:
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace tarnwick
