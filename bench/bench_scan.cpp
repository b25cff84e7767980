// The scan of every shape, a few megabytes each, in memory. Names end with the shape's size: the
// second of two runs has twice the size of the first, and its bytes per second should be the same.

#include "Shapes.h"
#include "analysis/SourceText.h"

#include <benchmark/benchmark.h>

using namespace tarnwick;

namespace {

void scan(benchmark::State& state, const shapes::Shape& shape)
{
    const auto size = static_cast<std::size_t>(state.range(0));
    const SharedBytes bytes = SharedBytes::ofString(shapes::made(shape, size));
    for (auto run : state) {
        SourceText source(bytes);
        benchmark::DoNotOptimize(source.makeListing(true));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.view.size()));
}

} // namespace

int main(int count, char** arguments)
{
    for (const shapes::Shape& shape : shapes::all()) {
        const auto size = static_cast<std::int64_t>(std::max<std::size_t>(shape.usualSize / 64, 8));
        benchmark::RegisterBenchmark(shape.name, scan, shape)
            ->Arg(size)
            ->Arg(2 * size)
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    }
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
