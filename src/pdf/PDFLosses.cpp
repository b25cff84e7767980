#include "pdf/PDFLosses.h"

#include <algorithm>

namespace tarnwick {

PDFLoss lossOf(PDFFailure failure)
{
    switch (failure) {
    case PDFFailure::isNone:
        break;
    case PDFFailure::isCancelled:
        return PDFLoss::isNotRead;
    case PDFFailure::isEngineDead:
        return PDFLoss::isEngineDead;
    case PDFFailure::isOutOfMemory:
        return PDFLoss::isOutOfMemory;
    case PDFFailure::isTimedOut:
        return PDFLoss::isTimedOut;
    case PDFFailure::isDamaged:
        return PDFLoss::isDamaged;
    }
    return PDFLoss::isNone;
}

void PDFLosses::add(const Range& range)
{
    if (range.loss == PDFLoss::isNone || range.last < range.first)
        return;
    const bool adjoins = !theRanges.isEmpty() && theRanges.constLast().loss == range.loss
        && theRanges.constLast().last + 1 == range.first;
    if (adjoins)
        theRanges.last().last = range.last;
    else
        theRanges.append(range);
}

QList<PDFLosses::Range> PDFLosses::ranges(PDFLoss loss) const
{
    QList<Range> some;
    std::copy_if(theRanges.begin(), theRanges.end(), std::back_inserter(some),
        [loss](const Range& range) { return range.loss == loss; });
    return some;
}

bool PDFLosses::hasPartial() const
{
    return std::any_of(theRanges.begin(), theRanges.end(),
        [](const Range& range) { return isPartial(range.loss); });
}

PDFLoss PDFLosses::of(int page) const
{
    const auto range = std::lower_bound(theRanges.begin(), theRanges.end(), page,
        [](const Range& one, int wanted) { return one.last < wanted; });
    return range != theRanges.end() && range->first <= page ? range->loss : PDFLoss::isNone;
}

} // namespace tarnwick
