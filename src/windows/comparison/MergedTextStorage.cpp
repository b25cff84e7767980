#include "MergedTextStorage.h"

#include <algorithm>

namespace tarnwick {

MergedTextStorage::MergedTextStorage(std::shared_ptr<const ComparedText> text)
    : PlainTextStorage(QString::fromStdU16String(text->merged.text))
    , theText(std::move(text))
{
}

TextLine MergedTextStorage::line(qsizetype index, qsizetype position, qsizetype count) const
{
    TextLine result = PlainTextStorage::line(index, position, count);
    const auto begin = static_cast<std::size_t>(positionOf({index, position}));
    const std::size_t end = begin + static_cast<std::size_t>(result.text.size());
    const auto& stretches = theText->merged.stretches;
    auto stretch = std::upper_bound(stretches.begin(), stretches.end(), begin,
        [](std::size_t place, const MergedText::Stretch& one) { return place < one.end; });
    for (; stretch != stretches.end() && stretch->begin < end; ++stretch) {
        const std::size_t from = std::max(stretch->begin, begin);
        const std::size_t to = std::min(stretch->end, end);
        result.marks.append(
            {static_cast<qsizetype>(from - begin), static_cast<qsizetype>(to - from),
                stretch->kind == MergedText::Kind::isRemoved ? TextMark::Kind::isAside
                                                             : TextMark::Kind::isStray});
    }
    return result;
}

TextRange MergedTextStorage::changeRange(int change) const
{
    const WordRange& range = theText->merged.changes[static_cast<std::size_t>(change)];
    return {
        placeOf(static_cast<qsizetype>(range.begin)), placeOf(static_cast<qsizetype>(range.end))};
}

} // namespace tarnwick
