#pragma once

#include "printing/PrintNotice.h"

#include <QList>
#include <QObject>

#include <functional>
#include <memory>

class QPrinter;

namespace tarnwick {

class PDFDocument;
class PDFFileRequest;
class PrintedFile;
class Progress;

/// One printing of a document's pages, from the dialog's end to the job's. Destroys itself at its
/// end, when it is cancelled, and when the document goes. No alert comes at its end but a notice:
/// where the pages have gone, or why not; also that the window or the document has gone before.
///
/// What is printed is a PDF file of the engine's, so that text stays text: the flattened document
/// where it prints as it is, else sheets of paper (PDFDocument::requestPrint()). What the engine
/// cannot write is painted instead.
class PagePrinting : public QObject
{
    Q_OBJECT

public:
    /// @param document open, borrowed.
    /// @param printer as the user has set it up.
    /// @param window that progress is shown in front of and the notice in, borrowed.
    PagePrinting(PDFDocument* document, std::unique_ptr<QPrinter> printer, QWidget* window);
    ~PagePrinting() override;

    /// ended() follows, perhaps before this returns, unless the printing is cancelled.
    void start();

signals:
    /// @param reason why nothing was printed, as a phrase for the user; empty when it was.
    void ended(const QString& reason);

private:
    bool isUnchanged(const QList<int>& pages) const;
    void printIntoFile();
    void printOnPaper();
    PDFFileRequest* requestSheets(const QList<int>& pages);
    /// Waits for the engine's file and hands it on, or paints the pages without one.
    void await(PDFFileRequest* request, const QList<int>& pages,
        const std::function<void(PDFFileRequest*)>& handOn);
    void paint(const QList<int>& pages);
    void showProgress(int done, int total);
    void end(const QString& reason);

    PDFDocument* theDocument;
    std::unique_ptr<QPrinter> thePrinter; ///< null once the pages are painted on it
    PrintedJob theJob;
    PrintedFile* theFile = nullptr; ///< set while printing into one
    QWidget* theWindow;
    std::unique_ptr<Progress> theProgress;
    bool isOver = false; ///< done, failed or cancelled
};

} // namespace tarnwick
