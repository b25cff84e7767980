#pragma once

#include <QAbstractScrollArea>
#include <QPointer>
#include <QSizeF>

#include <memory>

class PDFView;

/// A strip of small pages beside a page view: it shows the page view's document, follows its current
/// page, and goes to the page that the user chooses.
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

private:
    class Private;
    std::unique_ptr<Private> d;
};
