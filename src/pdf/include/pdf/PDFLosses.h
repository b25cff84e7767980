#pragma once

#include "pdf/PDFRequest.h"

#include <QList>
#include <QtGlobal>

namespace tarnwick {

/// Why something of a page is missing from what the PDF engine brought.
enum class PDFLoss : quint8
{
    isNone, ///< nothing is missing
    isTimedOut, ///< nothing is there: the engine took longer than it may
    isEngineDead, ///< nothing is there: the engine ended on the page
    isOutOfMemory, ///< nothing is there: the engine reached its memory limit
    isDamaged, ///< nothing is there: the page makes no sense
    isDamagedInPart, ///< what the damage leaves is there
    isCut, ///< its beginning is there, of a text longer than maximumPageCharacters
    isNotRead, ///< nothing is there: reading stopped before the page
};

/// What the failure of a request for a page makes of the page. isCancelled counts as isNotRead.
PDFLoss lossOf(PDFFailure failure);

/// Whether some of the page is there all the same.
constexpr bool isPartial(PDFLoss loss)
{
    return loss == PDFLoss::isDamagedInPart || loss == PDFLoss::isCut;
}

/// The pages of which something is missing, each with the reason: what goes along with everything
/// that was made of a document's pages, to those who show it or write it.
///
/// Pages are indices from 0. Neighbours that are lost for one reason take the room of one.
class PDFLosses
{
public:
    struct Range
    {
        int first = 0;
        int last = 0; ///< included
        PDFLoss loss = PDFLoss::isNone;
        bool operator==(const Range&) const = default;
    };

    /// Adds pages behind those that are there already; isNone and an empty range add nothing.
    void add(const Range& range);
    void add(int page, PDFLoss loss) { add({page, page, loss}); }

    /// In the order of the pages.
    const QList<Range>& ranges() const { return theRanges; }
    /// Those that are lost for one reason.
    QList<Range> ranges(PDFLoss loss) const;
    /// Whether some of any of the pages is there all the same.
    bool hasPartial() const;
    bool isEmpty() const { return theRanges.isEmpty(); }
    /// What is missing of a page.
    PDFLoss of(int page) const;

    bool operator==(const PDFLosses&) const = default;

private:
    QList<Range> theRanges;
};

} // namespace tarnwick
