#include "ReferringText.h"

#include "analysis/ReferenceScan.h"

#include <algorithm>
#include <limits>

namespace tarnwick {

namespace {

constexpr auto reach = static_cast<qsizetype>(ReferenceScan::reach);

/// @param[out] begin of the stretch that was read.
std::optional<ScannedReference> scan(
    const TextStorage& text, TextPosition position, qsizetype& begin)
{
    begin = std::max<qsizetype>(0, position.unit - reach);
    const QString stretch = text.line(position.line, begin, 2 * reach).text;
    return ReferenceScan::sourceReferenceAt(
        std::u16string_view(QStringView(stretch).utf16(), static_cast<std::size_t>(stretch.size())),
        static_cast<std::size_t>(position.unit - begin));
}

} // namespace

std::optional<TextRange> referenceRange(const TextStorage& text, TextPosition position)
{
    qsizetype begin = 0;
    const auto found = scan(text, position, begin);
    if (!found)
        return std::nullopt;
    return TextRange{{position.line, begin + static_cast<qsizetype>(found->begin)},
        {position.line, begin + static_cast<qsizetype>(found->end)}};
}

std::optional<int> referenceTarget(const TextStorage& text, TextPosition position)
{
    qsizetype begin = 0;
    const auto found = scan(text, position, begin);
    if (!found || found->objNo > std::numeric_limits<int>::max())
        return std::nullopt;
    return static_cast<int>(found->objNo);
}

} // namespace tarnwick
