// scan_file FILE [RUNS]: the scan of a file whose bytes are in memory, beside `wc -l` on the same
// file (in the page cache by then), in turns. Prints the medians, their ratio, and how much memory
// the scan took at its peak beyond the file's bytes.

#include "analysis/SourceText.h"
#include "files/LargePages.h"

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <vector>

using namespace tarnwick;

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;

/// Processor time of this process, or of its children that have ended.
double processorSeconds(int who)
{
    rusage usage{};
    getrusage(who, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// How long something takes: on the clock, and on the processor, which others' work disturbs less.
class Times
{
public:
    template<class Work> void take(int who, const Work& work)
    {
        const double before = processorSeconds(who);
        const auto start = Clock::now();
        work();
        theClock.push_back(std::chrono::duration<double>(Clock::now() - start).count());
        theProcessor.push_back(processorSeconds(who) - before);
    }

    double onClock() const { return median(theClock); }
    double onProcessor() const { return median(theProcessor); }

private:
    static double median(std::vector<double> values)
    {
        std::sort(values.begin(), values.end());
        return values[values.size() / 2];
    }

    std::vector<double> theClock;
    std::vector<double> theProcessor;
};

std::string contents(const char* path)
{
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file)
        return {};
    const auto size = static_cast<std::size_t>(file.tellg());
    std::string bytes;
    bytes.reserve(size);
    preferLargePages(bytes.data(), bytes.capacity());
    bytes.resize(size);
    file.seekg(0);
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

/// Memory at its peak since the last resetPeak(), in bytes.
double peakMemory()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:"))
            return std::strtod(line.c_str() + 6, nullptr) * 1024;
    return 0;
}

void resetPeak()
{
    std::ofstream("/proc/self/clear_refs") << "5\n";
}

void countLines(const char* path)
{
    const char* const arguments[] = {"wc", "-l", path, nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", 1, 0);
    pid_t child = 0;
    if (posix_spawnp(&child, "wc", &actions, nullptr, const_cast<char**>(arguments), environ) == 0)
        waitpid(child, nullptr, 0);
    posix_spawn_file_actions_destroy(&actions);
}

} // namespace

int main(int count, char** arguments)
{
    if (count < 2) {
        std::fprintf(stderr, "usage: scan_file FILE [RUNS]\n");
        return 2;
    }
    useLargePages();
    const SharedBytes bytes = SharedBytes::ofString(contents(arguments[1]));
    const double size = static_cast<double>(bytes.view.size());
    const int runs = count > 2 ? std::atoi(arguments[2]) : 5;
    Times scan;
    Times lineCount;
    double extra = 0;
    std::size_t pieces = 0;
    countLines(arguments[1]);
    for (int run = 0; run < std::max(runs, 1); ++run) {
        resetPeak();
        const double before = peakMemory();
        SourceText source(bytes);
        StyledText listing;
        scan.take(RUSAGE_SELF, [&] { listing = source.makeListing(true); });
        pieces = listing.pieceCount();
        extra = std::max(extra, peakMemory() - before);
        lineCount.take(RUSAGE_CHILDREN, [&] { countLines(arguments[1]); });
    }
    std::printf("%9.1f MB  scan %7.3f s (cpu %7.3f)  wc -l %6.3f s (cpu %6.3f)  ratio %6.2f (cpu "
                "%6.2f)  memory %7.1f MB = %5.1f %%  pieces %zu\n",
        size / 1e6, scan.onClock(), scan.onProcessor(), lineCount.onClock(),
        lineCount.onProcessor(), scan.onClock() / lineCount.onClock(),
        scan.onProcessor() / lineCount.onProcessor(), extra / 1e6,
        size > 0 ? 100 * extra / size : 0, pieces);
    return 0;
}
