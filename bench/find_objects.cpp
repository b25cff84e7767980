// find_objects FILE [RUNS]: in a scanned file, how long it takes to find an object by its number,
// by its place and by its line, and who refers to one, beside the scan. Prints medians.

#include "analysis/ObjectUsers.h"
#include "analysis/SourceText.h"
#include "files/LargePages.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

using namespace tarnwick;

namespace {

/// Processor time, which others' work disturbs less.
double seconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

template<class Work> double timeOf(const Work& work)
{
    const double start = seconds();
    work();
    return seconds() - start;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

std::string contents(const char* path)
{
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    std::string bytes;
    if (!file)
        return bytes;
    bytes.resize(static_cast<std::size_t>(file.tellg()));
    file.seekg(0);
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

/// Places that look random and are the same everywhere.
std::size_t place(std::size_t step, std::size_t count)
{
    return step * 0x9E3779B97F4A7C15u % count;
}

void lookUp(const SourceText& source, const StyledText& listing)
{
    constexpr std::size_t lookUps = 100'000;
    const pdfObjectCatalog& catalog = source.theCatalog();
    const auto report = [](const char* what, double time) {
        std::printf("  %-34s %8.2f us\n", what, time * 1e6 / lookUps);
    };
    std::size_t found = 0;
    report("an object by its number", timeOf([&] {
        for (std::size_t step = 0; step < lookUps; ++step)
            found
                += catalog.find(static_cast<std::int64_t>(place(step, catalog.size()))).has_value();
    }));
    report("an object by an offset", timeOf([&] {
        for (std::size_t step = 0; step < lookUps; ++step)
            found += catalog.recordAt(place(step, source.theString().size())).has_value();
    }));
    report("a line by an offset", timeOf([&] {
        for (std::size_t step = 0; step < lookUps; ++step)
            found += listing.lineOfOffset(place(step, source.theString().size())).has_value();
    }));
    report("an object's line in the list", timeOf([&] {
        for (std::size_t step = 0; step < lookUps; ++step)
            found += listing.lineOfObject(catalog.object(place(step, catalog.size()))).has_value();
    }));
    std::printf("  (%zu found)\n", found);
}

} // namespace

int main(int count, char** arguments)
{
    if (count < 2) {
        std::fprintf(stderr, "usage: find_objects FILE [RUNS]\n");
        return 2;
    }
    useLargePages();
    const SharedBytes bytes = SharedBytes::ofString(contents(arguments[1]));
    const int runs = std::max(count > 2 ? std::atoi(arguments[2]) : 5, 1);
    const std::int64_t numbers[] = {1, 2, 12345, 99'999'999};
    std::vector<double> scans;
    std::vector<double> passes[std::size(numbers)];
    std::size_t uses[std::size(numbers)] = {};
    for (int run = 0; run < runs; ++run) {
        SourceText source(bytes);
        StyledText listing;
        scans.push_back(timeOf([&] { listing = source.makeListing(true); }));
        for (std::size_t index = 0; index < std::size(numbers); ++index)
            passes[index].push_back(timeOf([&] {
                uses[index] = ObjectUsers(source.theCatalog()).find(numbers[index]).count;
            }));
        if (run + 1 == runs && source.theCatalog().size() > 0)
            lookUp(source, listing);
    }
    const double scan = median(scans);
    std::printf("  scan %.3f s\n", scan);
    for (std::size_t index = 0; index < std::size(numbers); ++index)
        std::printf("  users of object %-9lld %8zu uses %8.3f s, %.3f of the scan\n",
            static_cast<long long>(numbers[index]), uses[index], median(passes[index]),
            median(passes[index]) / scan);
    return 0;
}
