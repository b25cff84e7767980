#pragma once

#include "PrintPagination.h"
#include "pdf/PDFLosses.h"

#include <QList>
#include <QObject>
#include <QPainter>
#include <QPointer>

#include <map>
#include <memory>

class QPrinter;

namespace tarnwick {

class PDFDocument;
class PDFTileRequest;

/// Paints pages of a document on a printer, band by band as the engine draws them: the event loop
/// runs meanwhile, and no more than one band is in memory.
class PagePrintJob : public QObject
{
    Q_OBJECT

public:
    /// @param document borrowed; the job ends when it is destroyed.
    /// @param printer set up, its margins those of PrintSettings.
    /// @param pages of the document, from 0, in the order in which they are printed.
    PagePrintJob(PDFDocument* document, std::unique_ptr<QPrinter> printer, const QList<int>& pages,
        QObject* parent);
    ~PagePrintJob() override;

    /// progressed() and, once, finished() follow from the event loop. Destroying the job before
    /// prints nothing.
    void start();
    /// The pages that could not be drawn, whose sheets say so.
    PDFLosses losses() const;

signals:
    /// @param done pages of total that are on paper.
    void progressed(int done, int total);
    /// @param ok false when the printer did not take the job.
    void finished(bool ok);

private:
    void startPage();
    void startSheet();
    void startBand();
    void takeBand();
    void paintFailure();
    void end(bool ok);
    double pixelsPerPoint() const;

    QPointer<PDFDocument> theDocument;
    std::unique_ptr<QPrinter> thePrinter;
    QPainter thePainter;
    QList<int> thePages;
    qsizetype theIndex = 0; ///< into thePages
    QList<PrintSheet> theSheets; ///< of the present page
    qsizetype theSheet = 0;
    bool hasPrintedSheet = false;
    QRect theSheetArea; ///< the sheet's pixels on the page
    QRect theBand;
    QPointer<PDFTileRequest> theRequest;
    std::map<int, PDFLoss> theLostPages;
};

} // namespace tarnwick
