#pragma once

#include <QList>
#include <QString>

namespace tarnwick {

/// A stretch of a document's text: what the user selected, or a match of a search.
///
/// A value. Positions are UTF-16 units of the pages' strings (PDFPageText::string); both ends fall
/// between grapheme clusters. Comparing two selections compares their ranges.
class PDFSelection
{
public:
    /// A stretch within one page.
    struct Range
    {
        int page = 0; ///< page index from 0
        qsizetype start = 0;
        qsizetype length = 0; ///< at least 1

        bool operator==(const Range&) const = default;
    };

    /// No selection: isEmpty() holds.
    PDFSelection() = default;
    explicit PDFSelection(const Range& range)
        : theRanges{range}
    {
    }
    /// @param ranges in document order, at most one for a page.
    explicit PDFSelection(const QList<Range>& ranges)
        : theRanges(ranges)
    {
    }

    bool isEmpty() const { return theRanges.isEmpty(); }
    const QList<Range>& ranges() const { return theRanges; }

    bool operator==(const PDFSelection&) const = default;

private:
    QList<Range> theRanges;
};

} // namespace tarnwick
