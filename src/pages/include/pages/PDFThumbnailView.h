#pragma once

#include <QAbstractScrollArea>
#include <QPointer>
#include <QSizeF>

#include <memory>

namespace tarnwick {

class PDFView;

/// A strip of small pages beside a page view: it shows the page view's document, follows its
/// current page, and goes to the page that the user chooses.
class PDFThumbnailView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit PDFThumbnailView(QWidget* parent = nullptr);
    ~PDFThumbnailView() override;

    /// The page view to follow, borrowed; null detaches the strip, which is then empty.
    void setPDFView(PDFView* view);
    PDFView* pdfView() const;

    /// The box that each thumbnail fits into, in points (device-independent pixels); 90 x 120 at
    /// first; each side within [16, 1024].
    QSizeF thumbnailSize() const;
    void setThumbnailSize(const QSizeF& size);

    /// Pages that carry a small sign (marked pages), by index.
    void setMarkedPages(const QList<int>& pages);

    /// Where a page's thumbnail shows, its label included, in the viewport; null for a page that
    /// the strip does not have.
    QRect pageRect(int page) const;
    /// The page whose thumbnail lies under a point of the viewport, or -1.
    int pageAt(const QPoint& point) const;
    /// What a page's tool tip says: which page it is and, where it could not be drawn, why. The
    /// strip's accessible description names all pages that could not.
    QString pageTip(int page) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace tarnwick
