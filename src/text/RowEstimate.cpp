#include "text/RowEstimate.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace tarnwick {

namespace {

constexpr qsizetype mostGroups = 8192;
/// Lines between two looks at the clock.
constexpr qsizetype portion = 64;

} // namespace

void RowEstimate::restart(const TextStorage& storage, double unitsPerRow,
    std::shared_ptr<const std::vector<qsizetype>> gaps)
{
    *this = {};
    theGaps = std::move(gaps);
    theStorage = &storage;
    theUnitsPerRow = unitsPerRow;
    theLineCount = storage.lineCount();
    theGroupSize = (theLineCount + mostGroups - 1) / mostGroups;
    theRowsBefore.push_back(0);
}

bool RowEstimate::advance(QDeadlineTimer deadline)
{
    while (theNextLine < theLineCount && !deadline.hasExpired()) {
        const qsizetype end = std::min(theNextLine + portion, theLineCount);
        for (; theNextLine < end; ++theNextLine) {
            const qsizetype length = theStorage->lineLength(theNextLine);
            theLongest = std::max(theLongest, length);
            theGroupRows += rowsOfLength(length);
            if ((theNextLine + 1) % theGroupSize == 0 || theNextLine + 1 == theLineCount) {
                theRowsBefore.push_back(theRowsBefore.back() + theGroupRows);
                theGroupRows = 0;
            }
        }
    }
    return theNextLine < theLineCount;
}

double RowEstimate::rowsOfLength(qsizetype length) const
{
    if (theUnitsPerRow <= 0)
        return 1;
    return std::max(1.0, std::ceil(static_cast<double>(length) / theUnitsPerRow));
}

double RowEstimate::averageRows() const
{
    const double rows = theRowsBefore.back() + theGroupRows;
    return theNextLine == 0 ? 1 : rows / static_cast<double>(theNextLine);
}

double RowEstimate::totalRows() const
{
    return rowsBefore(theLineCount);
}

double RowEstimate::rowsBefore(qsizetype line) const
{
    return lineRowsBefore(line) + gapsBefore(line);
}

double RowEstimate::gapsBefore(qsizetype line) const
{
    if (!theGaps)
        return 0;
    const auto end = std::lower_bound(theGaps->begin(), theGaps->end(), line);
    return static_cast<double>(end - theGaps->begin());
}

double RowEstimate::lineRowsBefore(qsizetype line) const
{
    const qsizetype group = line / theGroupSize;
    const auto known = static_cast<qsizetype>(theRowsBefore.size()) - 1;
    if (group >= known) {
        const qsizetype unread = line - std::min(known * theGroupSize, theLineCount);
        return theRowsBefore.back() + static_cast<double>(unread) * averageRows();
    }
    const auto at = static_cast<std::size_t>(group);
    const double rows = theRowsBefore[at + 1] - theRowsBefore[at];
    const qsizetype lines = std::min(theGroupSize, theLineCount - group * theGroupSize);
    const auto share
        = static_cast<double>(line - group * theGroupSize) / static_cast<double>(lines);
    return theRowsBefore[at] + rows * share;
}

double RowEstimate::rowsOf(qsizetype line) const
{
    return rowsBefore(line + 1) - rowsBefore(line);
}

qsizetype RowEstimate::lineAt(double rows) const
{
    qsizetype first = 0; // begins at or above rows
    qsizetype behind = theLineCount; // begins below
    while (behind - first > 1) {
        const qsizetype middle = first + (behind - first) / 2;
        if (rowsBefore(middle) <= rows)
            first = middle;
        else
            behind = middle;
    }
    return first;
}

} // namespace tarnwick
