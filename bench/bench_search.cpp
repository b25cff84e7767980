// A search over the text of a book already fetched: a million characters, page after page.

#include "TextSearch.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

using namespace tarnwick;

namespace {

constexpr std::size_t pageCount = 400;
constexpr std::size_t charactersPerPage = 2500;

/// Pages of words, a line end after every 80 characters or so. @param letters of the words.
std::vector<std::u16string> book(std::u16string_view letters)
{
    std::vector<std::u16string> pages(pageCount);
    std::size_t state = 1;
    for (std::u16string& page : pages) {
        while (page.size() < charactersPerPage) {
            state = state * 6364136223846793005U + 1442695040888963407U;
            for (std::size_t count = 2 + (state >> 60); count > 0; --count)
                page += letters[(state >> (3 * count)) % letters.size()];
            page += page.size() % 80 < 9 ? u'\n' : u' ';
        }
    }
    return pages;
}

void search(benchmark::State& state, std::u16string_view letters, std::u16string_view pattern)
{
    const std::vector<std::u16string> pages = book(letters);
    const auto options = static_cast<SearchOptions>(state.range(0));
    std::size_t found = 0;
    for (auto run : state) {
        TextSearch textSearch(pattern, options);
        found = 0;
        for (const std::u16string& page : pages)
            found += textSearch.matches(page).size();
    }
    state.counters["matches"] = static_cast<double>(found);
    state.SetItemsProcessed(
        state.iterations() * static_cast<std::int64_t>(pageCount * charactersPerPage));
}

} // namespace

// The argument is the comparison: 0 respects case, 1 ignores it, 2 compares code points.
BENCHMARK_CAPTURE(search, frequent, u"etaoinsr", u"a")
    ->DenseRange(0, 2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(search, rare, u"etaoinsrhl", u"station")
    ->DenseRange(0, 2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(search, accented, u"e\u00E9\u00E8\u00FCao\u00DFn", u"\u00E9\u00E8")
    ->DenseRange(0, 2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(search, han, u"\u4E00\u4E8C\u4E09\u56DB\u4E94", u"\u4E09\u4E94")
    ->DenseRange(0, 2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
