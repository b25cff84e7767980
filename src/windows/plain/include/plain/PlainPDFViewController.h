#pragma once

#include <QWidget>

namespace tarnwick {

class Document;
class PDFView;

/// Content of the plain PDF window: a document's pages and nothing beside them.
///
/// Each time it is shown it gives its page view the document, fits the pages to the view's width
/// and names its window.
class PlainPDFViewController : public QWidget
{
    Q_OBJECT

public:
    /// Begins the title of every plain PDF window, before the file's name: U+2757 U+FE0F.
    static const QString titlePrefix;

    /// @param document borrowed for the view's life; open.
    explicit PlainPDFViewController(Document* document, QWidget* parent = nullptr);

    /// The page view. The setter exchanges it for all that it is used for; another one shows the
    /// document from the next showing on. Borrowed.
    PDFView* thePDFView() const { return theOutlet; }
    void setThePDFView(PDFView* view);

public slots:
    /// Fits the pages to the view's width again, and after every resize.
    void autoZoom();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void setUp();
    void PDFViewPerformPrint(PDFView* view);

    Document* theDocument;
    PDFView* theOutlet = nullptr;
};

} // namespace tarnwick
