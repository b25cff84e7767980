#pragma once

#include "compare/PagePairs.h"
#include "compare/PictureCells.h"
#include "pdf/PDFLosses.h"
#include "pdf/PDFRequest.h"

#include <QString>

#include <array>
#include <vector>

namespace tarnwick {

/// The earlier and the later document of a comparison.
enum class ComparedSide
{
    isBefore,
    isAfter,
};

/// Words that one of two texts has alone, as they are told of.
struct ComparedWords
{
    QString before; ///< what stood there, shortened; empty where nothing did
    QString after;
    std::size_t removed = 0; ///< words
    std::size_t added = 0;
};

/// What comparing has found out of a page and the one that it is paired with.
struct ComparedPage
{
    PagePair pair;
    bool isCompared = false; ///< as far as that is possible
    /// Where the two look different, in page space of the later page. Empty for pages that look the
    /// same, and for one that was added or removed.
    std::vector<PictureArea> areas;
    bool isResized = false; ///< the pages have other sizes
    bool isRewritten = false; ///< the texts have too little in common to be told apart
    std::vector<ComparedWords> words; ///< in the order of the text; at most mostTold
    std::size_t changes = 0; ///< all of them
    /// Why a side could not be drawn, and what is missing of its text.
    std::array<PDFFailure, 2> failures = {PDFFailure::isNone, PDFFailure::isNone};
    std::array<PDFLoss, 2> losses = {PDFLoss::isNone, PDFLoss::isNone};

    static constexpr std::size_t mostTold = 200;

    bool isAdded() const { return pair.before < 0; }
    bool isRemoved() const { return pair.after < 0; }
    bool isLost() const
    {
        return failures[0] != PDFFailure::isNone || failures[1] != PDFFailure::isNone
            || losses[0] != PDFLoss::isNone || losses[1] != PDFLoss::isNone;
    }
    bool looksDifferent() const { return !areas.empty() || isResized; }
    bool readsDifferent() const { return changes > 0; }
    /// Whether there is something to say of the pages' look or order.
    bool isTold() const
    {
        return isAdded() || isRemoved() || pair.isMoved || looksDifferent() || isLost();
    }
};

} // namespace tarnwick
