#include "PagePrinting.h"

#include "CupsSubmission.h"
#include "PagePrintJob.h"
#include "PrintPagination.h"
#include "dialogs/Progress.h"
#include "pdf/LossText.h"
#include "pdf/PDFDocument.h"
#include "printing/PrintSettings.h"
#include "printing/PrintedFile.h"

#include <QPrinter>

#include <algorithm>

namespace tarnwick {

namespace {

/// Qt's printers count in 1200 dots per inch, which no printer's paper shows and every page pays
/// for with the square.
constexpr int paperResolution = 600;
constexpr int fileResolution = 300;

QList<int> chosenPages(const QPrinter& printer, int count)
{
    QList<int> pages;
    const QPageRanges ranges = printer.pageRanges();
    const bool isAll = printer.printRange() != QPrinter::PageRange || ranges.isEmpty();
    for (int page = 0; page < count; ++page) {
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

} // namespace

PagePrinting::PagePrinting(
    PDFDocument* document, std::unique_ptr<QPrinter> printer, QWidget* window)
    : QObject(window)
    , theDocument(document)
    , thePrinter(std::move(printer))
    , theJob{thePrinter->docName(), {}, thePrinter->printerName()}
    , theWindow(window)
    , theProgress(std::make_unique<Progress>(
          tr("Print"), tr("Printing…"), window, Progress::Blocking::isWindow))
{
    // What is under way belongs to this object: request, job and file give up when it goes.
    connect(theProgress.get(), &Progress::cancelled, this, [this] {
        isOver = true;
        deleteLater();
    });
    connect(document, &QObject::destroyed, this, &QObject::deleteLater);
    askBeforeClosing(window, this, theJob.title);
}

PagePrinting::~PagePrinting()
{
    if (!isOver)
        tellOfClosing(theJob);
}

void PagePrinting::start()
{
    PrintSettings::applyTo(*thePrinter);
    if (thePrinter->outputFormat() == QPrinter::PdfFormat)
        printIntoFile();
    else
        printOnPaper();
}

/// Whether the file itself prints as it is: all of it, no page over two sheets.
bool PagePrinting::isUnchanged(const QList<int>& pages) const
{
    const QSizeF printable = PrintSettings::printableSizeInPoints(thePrinter->pageLayout());
    if (pages.size() != theDocument->pageCount()
        || thePrinter->pageOrder() == QPrinter::LastPageFirst)
        return false;
    return std::all_of(pages.begin(), pages.end(), [&](int page) {
        return PrintPagination::sheets(page, theDocument->pageSize(page), printable).size() == 1;
    });
}

void PagePrinting::printIntoFile()
{
    theJob.path = thePrinter->outputFileName();
    theFile = new PrintedFile(theJob.path, this);
    if (const QString reason = theFile->open(); !reason.isEmpty())
        return end(reason);
    connect(theFile, &PrintedFile::finished, this, &PagePrinting::end);
    const QList<int> pages
        = withCopies(*thePrinter, chosenPages(*thePrinter, theDocument->pageCount()));
    await(requestSheets(pages), pages,
        [this](PDFFileRequest* request) { theFile->complete(request->file().bytes); });
}

void PagePrinting::printOnPaper()
{
    const QList<int> pages = chosenPages(*thePrinter, theDocument->pageCount());
    const bool isAsItIs = isUnchanged(pages);
    const auto layout
        = isAsItIs ? CupsSubmission::Layout::isOfDocument : CupsSubmission::Layout::isOfPaper;
    PDFFileRequest* const request
        = isAsItIs ? theDocument->requestFlat(this) : requestSheets(pages);
    await(request, withCopies(*thePrinter, pages), [this, layout](PDFFileRequest* file) {
        auto* const submission
            = new CupsSubmission(thePrinter->printerName(), thePrinter->docName(),
                file->file().bytes, CupsSubmission::optionsFor(*thePrinter, layout), this);
        connect(submission, &CupsSubmission::finished, this, &PagePrinting::end);
    });
}

PDFFileRequest* PagePrinting::requestSheets(const QList<int>& pages)
{
    constexpr double margin = PrintSettings::marginInPoints;
    const QPageLayout layout = thePrinter->pageLayout();
    const QSizeF printable = PrintSettings::printableSizeInPoints(layout);
    QList<PrintSheet> sheets;
    for (const int page : pages)
        sheets += PrintPagination::sheets(page, theDocument->pageSize(page), printable);
    return theDocument->requestPrint(
        {layout.fullRect(QPageLayout::Point).size(), {margin, margin}}, sheets, this);
}

void PagePrinting::await(PDFFileRequest* request, const QList<int>& pages,
    const std::function<void(PDFFileRequest*)>& handOn)
{
    connect(request, &PDFRequest::progressed, this, &PagePrinting::showProgress);
    connect(request, &PDFRequest::finished, this, [this, request, pages, handOn] {
        // What cannot be written out again may still be drawn.
        if (!request->succeeded())
            return paint(pages);
        showProgress(0, 0);
        theJob.missing = lossSentences(request->file().losses, LossSubject::isPrint);
        if (theJob.missing.isEmpty() && !request->file().isWhole())
            theJob.missing << lostObjectsSentence(request->file().lostObjects);
        handOn(request);
    });
}

void PagePrinting::paint(const QList<int>& pages)
{
    if (theFile)
        thePrinter->setOutputFileName(theFile->unfinishedPath());
    thePrinter->setResolution(
        std::min(thePrinter->resolution(), theFile ? fileResolution : paperResolution));
    auto* const job = new PagePrintJob(theDocument, std::move(thePrinter), pages, this);
    connect(job, &PagePrintJob::progressed, this, [this](int done, int total) {
        showProgress(done, total);
        theProgress->setLabel(
            tr("Printing page %1 of %2…").arg(std::min(done + 1, total)).arg(total));
    });
    connect(job, &PagePrintJob::finished, this, [this, job](bool ok) {
        theJob.missing = lossSentences(job->losses(), LossSubject::isPrint);
        if (ok && theFile)
            return theFile->completePainted();
        end(ok ? QString() : paintingFailure());
    });
    job->start();
}

void PagePrinting::showProgress(int done, int total)
{
    theProgress->show(static_cast<quint64>(done), static_cast<quint64>(total));
}

void PagePrinting::end(const QString& reason)
{
    isOver = true;
    theProgress.reset();
    deleteLater();
    tellUser(printNotice(theJob, reason), theWindow);
    emit ended(reason);
}

} // namespace tarnwick
