#include "platform/PagePrinter.h"

#include "platform/CupsSubmission.h"
#include "platform/PDFDocument.h"
#include "platform/PagePrintJob.h"
#include "platform/PrintSettings.h"
#include "platform/frame/DocumentWindow.h"
#include "platform/frame/FrameDocument.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QMessageBox>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressDialog>

#include <algorithm>

namespace {

/// Qt's printers count in 1200 dots per inch, which no printer's paper shows and every page pays
/// for with the square.
constexpr int paperResolution = 600;
constexpr int fileResolution = 300;

QString translated(const char* text)
{
    return QCoreApplication::translate("PagePrinter", text);
}

QList<int> chosenPages(const QPrinter& printer, int count)
{
    QList<int> pages;
    for (int page = 0; page < count; ++page) {
        const QPageRanges ranges = printer.pageRanges();
        const bool isAll = printer.printRange() != QPrinter::PageRange || ranges.isEmpty();
        if (isAll || ranges.contains(page + 1))
            pages.append(page);
    }
    if (printer.pageOrder() == QPrinter::LastPageFirst)
        std::reverse(pages.begin(), pages.end());
    return pages;
}

/// The copies that the printer does not make itself.
QList<int> withCopies(const QPrinter& printer, const QList<int>& pages)
{
    if (printer.supportsMultipleCopies() || printer.copyCount() <= 1)
        return pages;
    QList<int> all;
    if (printer.collateCopies()) {
        for (int copy = 0; copy < printer.copyCount(); ++copy)
            all += pages;
        return all;
    }
    for (const int page : pages)
        all += QList<int>(printer.copyCount(), page);
    return all;
}

/// One printing, from the dialog's end to the job's. Destroys itself.
class Printing : public QObject
{
public:
    Printing(PDFDocument* document, std::unique_ptr<QPrinter> printer, QWidget* window)
        : QObject(window)
        , theDocument(document)
        , thePrinter(std::move(printer))
        , theProgress(translated("Printing…"), translated("Cancel"), 0, 0, window)
    {
        theProgress.setWindowModality(Qt::WindowModal);
        theProgress.setWindowTitle(translated("Print"));
        theProgress.setMinimumDuration(500);
        theProgress.setAutoReset(false);
        theProgress.setAutoClose(false);
        connect(document, &QObject::destroyed, this, &QObject::deleteLater);
    }

    void start()
    {
        if (isOutputTheOpenedFile())
            return end(translated("The file would replace the one that is open, which is never "
                                  "written. Choose another name."));
        PrintSettings::applyTo(*thePrinter);
        const QList<int> pages = chosenPages(*thePrinter, theDocument->pageCount());
        if (thePrinter->outputFormat() == QPrinter::NativeFormat && isUnchanged(pages))
            return submitFlat();
        paint(withCopies(*thePrinter, pages));
    }

private:
    /// The print dialog proposes the document's own name in the user's folder.
    bool isOutputTheOpenedFile() const
    {
        const DocumentWindow* const frame = DocumentWindow::of(theProgress.parentWidget());
        const FrameDocument* const document = frame ? frame->document() : nullptr;
        const QString output = thePrinter->outputFileName();
        return document && !output.isEmpty() && document->fileURL().isLocalFile()
            && QFileInfo(output) == QFileInfo(document->fileURL().toLocalFile());
    }

    /// Whether the file itself prints as it is: all of it, no page over two sheets.
    bool isUnchanged(const QList<int>& pages) const
    {
        const QSizeF printable = PrintSettings::printableSizeInPoints(thePrinter->pageLayout());
        if (pages.size() != theDocument->pageCount()
            || thePrinter->pageOrder() == QPrinter::LastPageFirst)
            return false;
        return std::all_of(pages.begin(), pages.end(), [&](int page) {
            return PrintPagination::sheets(page, theDocument->pageSize(page), printable).size()
                == 1;
        });
    }

    void submitFlat()
    {
        PDFFlatRequest* const request = theDocument->requestFlat(this);
        connect(request, &PDFRequest::progressed, this, [this](int done, int total) {
            theProgress.setMaximum(total);
            theProgress.setValue(std::min(done, total - 1));
        });
        connect(&theProgress, &QProgressDialog::canceled, this, &QObject::deleteLater);
        connect(request, &PDFRequest::finished, this, [this, request] {
            // What cannot be written out again may still be drawn.
            if (!request->succeeded())
                return paint(chosenPages(*thePrinter, theDocument->pageCount()));
            auto* const submission
                = new CupsSubmission(thePrinter->printerName(), thePrinter->docName(),
                    request->bytes(), CupsSubmission::optionsFor(*thePrinter), this);
            connect(submission, &CupsSubmission::finished, this, &Printing::end);
        });
    }

    void paint(const QList<int>& pages)
    {
        const bool isFile = thePrinter->outputFormat() == QPrinter::PdfFormat;
        thePrinter->setResolution(
            std::min(thePrinter->resolution(), isFile ? fileResolution : paperResolution));
        auto* const job = new PagePrintJob(theDocument, std::move(thePrinter), pages, this);
        connect(job, &PagePrintJob::progressed, this, [this](int done, int total) {
            theProgress.setMaximum(total);
            theProgress.setValue(done);
            theProgress.setLabelText(
                translated("Printing page %1 of %2…").arg(std::min(done + 1, total)).arg(total));
        });
        connect(job, &PagePrintJob::finished, this, [this](bool ok) {
            end(ok ? QString() : translated("The printer or the file cannot be written to."));
        });
        connect(&theProgress, &QProgressDialog::canceled, this, [this, job] {
            job->cancel();
            deleteLater();
        });
        job->start();
    }

    void end(const QString& reason)
    {
        theProgress.disconnect(this);
        theProgress.reset();
        deleteLater();
        if (reason.isEmpty())
            return;
        auto* const box = new QMessageBox(QMessageBox::Warning, translated("Print"),
            translated("The document could not be printed."), QMessageBox::Ok,
            theProgress.parentWidget());
        box->setInformativeText(reason);
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->open();
    }

    PDFDocument* theDocument;
    std::unique_ptr<QPrinter> thePrinter;
    QProgressDialog theProgress;
};

} // namespace

void PagePrinter::printAsSheet(PDFDocument* document, const QString& title, QWidget* window)
{
    std::unique_ptr<QPrinter> printer = PrintSettings::makePrinter();
    printer->setDocName(title);
    auto* const dialog = new QPrintDialog(printer.get(), window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setOption(QAbstractPrintDialog::PrintPageRange);
    dialog->setOption(QAbstractPrintDialog::PrintToFile);
    dialog->setMinMax(1, std::max(1, document->pageCount()));
    QObject::connect(document, &QObject::destroyed, dialog, &QDialog::reject);
    // The dialog works on the printer to its end: printing takes it over after that.
    const auto shared = std::make_shared<std::unique_ptr<QPrinter>>(std::move(printer));
    const auto isAccepted = std::make_shared<bool>(false);
    QObject::connect(dialog, &QDialog::accepted, window, [isAccepted] { *isAccepted = true; });
    QObject::connect(dialog, &QObject::destroyed, window,
        [document = QPointer<PDFDocument>(document), shared, isAccepted, window] {
            if (document && *isAccepted)
                (new Printing(document, std::move(*shared), window))->start();
        });
    dialog->open();
}
