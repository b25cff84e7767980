#pragma once

#include "text/TextStorage.h"

#include <QDeadlineTimer>

#include <memory>

#include <vector>

namespace tarnwick {

/// About how many rows the lines of a text take, for the scroll bars of a text that is far too long
/// to be laid out.
///
/// Gaps take a row each above the lines that they stand before. Rows are estimated from the lines'
/// lengths. Reading thirty million lengths takes seconds, so it is done in portions; lines not yet
/// read count as the average of those that are.
class RowEstimate
{
public:
    /// @param storage borrowed until the next restart(). @param unitsPerRow characters that fit in
    /// a
    ///   row, or 0 when every line is one row.
    /// @param gaps lines with a gap, growing.
    void restart(const TextStorage& storage, double unitsPerRow,
        std::shared_ptr<const std::vector<qsizetype>> gaps = nullptr);

    /// Reads on until the deadline. @returns whether anything is left to read.
    bool advance(QDeadlineTimer deadline);

    double totalRows() const;
    /// Rows of all lines before a line, and of their gaps. Precondition: 0 <= line <= lineCount().
    double rowsBefore(qsizetype line) const;
    double rowsOf(qsizetype line) const;
    /// The line in which so many rows from the top end, never outside the text.
    qsizetype lineAt(double rows) const;

    /// Units of the longest line read so far.
    qsizetype longestLine() const { return theLongest; }

private:
    double gapsBefore(qsizetype line) const;
    double lineRowsBefore(qsizetype line) const;
    double averageRows() const;
    double rowsOfLength(qsizetype length) const;

    const TextStorage* theStorage = nullptr;
    std::shared_ptr<const std::vector<qsizetype>> theGaps;
    double theUnitsPerRow = 0;
    qsizetype theLineCount = 0;
    qsizetype theGroupSize = 1; ///< lines whose rows are kept as one number
    qsizetype theNextLine = 0; ///< to be read
    double theGroupRows = 0; ///< of the group being read
    qsizetype theLongest = 0;
    std::vector<double> theRowsBefore; ///< each group that is read, and what follows
};

} // namespace tarnwick
