#include "PageLabels.h"

#include "Attempt.h"
#include "EngineDocument.h"

#include <algorithm>

namespace tarnwick {

namespace {

constexpr std::size_t longestNumber = 255;
constexpr std::size_t longestPrefix = 4 * 255; ///< 255 characters of UTF-8
constexpr std::size_t maximumRanges = 1'000'000;
constexpr int maximumDepth = 64;

std::string romanNumber(int number)
{
    static constexpr struct
    {
        int value;
        const char* digits;
    } steps[] = {{1000, "M"}, {900, "CM"}, {500, "D"}, {400, "CD"}, {100, "C"}, {90, "XC"},
        {50, "L"}, {40, "XL"}, {10, "X"}, {9, "IX"}, {5, "V"}, {4, "IV"}, {1, "I"}};
    std::string text;
    for (const auto& step : steps) {
        for (; number >= step.value && text.size() < longestNumber; number -= step.value)
            text += step.digits;
    }
    return text;
}

/// A to Z, then AA to ZZ, then AAA: the letter is doubled, not counted with.
std::string letterNumber(int number)
{
    const auto length = static_cast<std::size_t>((number - 1) / 26 + 1);
    return std::string(std::min(length, longestNumber), static_cast<char>('A' + (number - 1) % 26));
}

std::string styledNumber(char style, int number)
{
    if (number < 1)
        return std::to_string(number);
    std::string text;
    switch (style) {
    case 'R':
    case 'r':
        text = romanNumber(number);
        break;
    case 'A':
    case 'a':
        text = letterNumber(number);
        break;
    default:
        return std::to_string(number);
    }
    if (style == 'r' || style == 'a') {
        for (char& letter : text)
            letter = static_cast<char>(letter - 'A' + 'a');
    }
    return text;
}

void readRange(fz_context* ctx, pdf_obj* page, pdf_obj* label, std::vector<PageLabelRange>& ranges)
{
    int firstPage = -1;
    int firstNumber = 1;
    const char* style = "";
    const char* prefix = "";
    const int error = attempt(ctx, [&] {
        firstPage = pdf_is_int(ctx, page) ? pdf_to_int(ctx, page) : -1;
        style = pdf_to_name(ctx, pdf_dict_get(ctx, label, PDF_NAME(S)));
        prefix = pdf_to_text_string(ctx, pdf_dict_get(ctx, label, PDF_NAME(P)));
        if (pdf_obj* number = pdf_dict_gets(ctx, label, "St"))
            firstNumber = pdf_to_int(ctx, number);
    });
    if (error || firstPage < 0)
        return;
    ranges.push_back({firstPage, style[0], std::string(prefix).substr(0, longestPrefix),
        std::max(firstNumber, 1)});
}

/// Number tree (ISO 32000-2, 7.9.7): Nums holds pairs, Kids leads on.
void readNode(fz_context* ctx, pdf_obj* node, int depth, std::vector<PageLabelRange>& ranges)
{
    pdf_obj* nums = nullptr;
    pdf_obj* kids = nullptr;
    int numCount = 0;
    int kidCount = 0;
    const int error = attempt(ctx, [&] {
        nums = pdf_dict_get(ctx, node, PDF_NAME(Nums));
        kids = pdf_dict_get(ctx, node, PDF_NAME(Kids));
        numCount = pdf_array_len(ctx, nums);
        kidCount = pdf_array_len(ctx, kids);
    });
    if (error || depth > maximumDepth)
        return;
    const auto item = [ctx](pdf_obj* array, int index) {
        pdf_obj* object = nullptr;
        const int failure = attempt(ctx, [&] { object = pdf_array_get(ctx, array, index); });
        return failure ? nullptr : object;
    };
    for (int index = 0; index + 1 < numCount && ranges.size() < maximumRanges; index += 2)
        readRange(ctx, item(nums, index), item(nums, index + 1), ranges);
    // A tree that leads back to itself is cut by depth and by the number of kids looked at in all.
    for (int index = 0; index < kidCount && index < 4096 && ranges.size() < maximumRanges; ++index)
        readNode(ctx, item(kids, index), depth + 1, ranges);
}

} // namespace

std::vector<PageLabelRange> readPageLabels(fz_context* ctx, pdf_document* document)
{
    std::vector<PageLabelRange> ranges;
    pdf_obj* labels = nullptr;
    const int error = attempt(ctx, [&] {
        pdf_obj* catalog = pdf_dict_get(ctx, pdf_trailer(ctx, document), PDF_NAME(Root));
        labels = pdf_dict_gets(ctx, catalog, "PageLabels");
    });
    if (!error && labels)
        readNode(ctx, labels, 0, ranges);
    std::stable_sort(ranges.begin(), ranges.end(),
        [](const auto& one, const auto& other) { return one.firstPage < other.firstPage; });
    return ranges;
}

std::optional<std::string> pageLabel(const std::vector<PageLabelRange>& ranges, int page)
{
    const auto after = std::upper_bound(ranges.begin(), ranges.end(), page,
        [](int wanted, const PageLabelRange& range) { return wanted < range.firstPage; });
    if (after == ranges.begin())
        return std::nullopt;
    const PageLabelRange& range = *std::prev(after);
    if (range.style == 0)
        return range.prefix;
    const std::int64_t number = std::int64_t{range.firstNumber} + page - range.firstPage;
    return range.prefix
        + styledNumber(
            range.style, static_cast<int>(std::min<std::int64_t>(number, 2'000'000'000)));
}

} // namespace tarnwick
