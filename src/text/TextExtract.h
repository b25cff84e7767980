#pragma once

#include "text/TextPosition.h"
#include "text/TextStorage.h"

#include <QDeadlineTimer>

#include <memory>

namespace tarnwick {

/// The nearest place that a text really has.
TextPosition clampedToText(const TextStorage& storage, TextPosition position);

/// Collects the characters of a range of a text as they stand there, line ends included, in
/// portions where it is long.
class TextCollector
{
public:
    /// @param limit UTF-16 units after which collecting ends; no surrogate pair is cut.
    TextCollector(std::shared_ptr<const TextStorage> storage, TextRange range, qsizetype limit);

    /// Goes on until the deadline. @returns whether anything is left.
    bool advance(QDeadlineTimer deadline);

    const QString& text() const { return theText; }
    /// The limit was met before the range's end.
    bool isCut() const { return theIsCut; }

private:
    void collectStretch();
    void collectLineEnd();

    std::shared_ptr<const TextStorage> theStorage;
    TextPosition theNext;
    TextPosition theEnd;
    qsizetype theLimit;
    QString theText;
    bool theIsDone = false;
    bool theIsCut = false;
};

/// The characters of a range, at most limit units. For ranges that are known to be short.
QString textOf(std::shared_ptr<const TextStorage> storage, TextRange range, qsizetype limit);

/// Units that a range has at most, its line ends counting two each, or limit + 1 when that is more
/// than limit. Stops at the deadline and then returns limit + 1 as well.
qsizetype unitsIn(
    const TextStorage& storage, TextRange range, qsizetype limit, QDeadlineTimer deadline);

} // namespace tarnwick
