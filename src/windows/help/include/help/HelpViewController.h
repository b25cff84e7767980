#pragma once

#include <QString>
#include <QWidget>

#include <memory>

namespace tarnwick {

class PDFDocument;
class PDFDocumentText;
class PDFView;

/// Content of the help window: the manual, "TarnwickHelp.pdf" among the program's resources, scaled
/// to the window's width.
///
/// Each time it is shown it reads the manual anew, so that every window has a copy of its own;
/// while it is hidden it holds none. A manual that is missing or cannot be read leaves the view
/// empty, without a message.
class HelpViewController : public QWidget
{
    Q_OBJECT

public:
    /// @param file the manual; empty for the one that came with the program (manualFile()).
    explicit HelpViewController(const QString& file = {}, QWidget* parent = nullptr);
    ~HelpViewController() override;

    /// Where the manual lies: beside the program's own share folder, or among the system's data.
    /// @returns an empty path when there is none.
    static QString manualFile();

    /// The page view. The setter exchanges it for all that it is used for; another one shows the
    /// manual from the next showing on. Borrowed.
    PDFView* helpPDFView() const { return theOutlet; }
    void setHelpPDFView(PDFView* view);
    /// The manual; null while the view is hidden or there is none.
    PDFDocument* thePDFDocument() const { return theManual.get(); }

public slots:
    /// Fits the pages to the view's width again, and after every resize.
    void autoZoom();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void load();
    void showManual();

    QString theFile;
    PDFView* theOutlet = nullptr;
    std::unique_ptr<PDFDocument> theManual;
    std::unique_ptr<PDFDocumentText> theText; // destroyed before the document that it reads
};

} // namespace tarnwick
