// show_bytes FILE [RUNS]: shows the bytes of a file without a display, and prints how long a window
// takes to its first paint, to jump to the file's end and paint that, and to search the file for
// text and digits that are not there, beside `grep -c` for the same text. Medians, in milliseconds,
// and megabytes that showing took.

#include "ByteMatches.h"
#include "files/FileBytes.h"
#include "text/HexView.h"

#include <QApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

using namespace tarnwick;

namespace {

/// Milliseconds.
double timeOf(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

double median(int runs, const std::function<double()>& measure)
{
    std::vector<double> values;
    for (int run = 0; run < runs; ++run)
        values.push_back(measure());
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Memory of this process that is no file's, in megabytes.
double ownMemory()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("RssAnon:"))
            return std::strtod(line.c_str() + 8, nullptr) / 1024;
    return 0;
}

void search(std::string_view bytes, const BytePattern& pattern)
{
    ByteMatches matches(bytes, pattern);
    while (!matches.isComplete())
        matches.add(ByteMatches::search(bytes, pattern, matches.searchedTo()));
}

void print(const char* what, double value, const char* unit)
{
    std::printf("%-34s %9.1f %s\n", what, value, unit);
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 5;
    const auto file = argc > 1 ? FileBytes::read(QString::fromLocal8Bit(argv[1])) : std::nullopt;
    if (!file) {
        qCritical("show_bytes: cannot read the file");
        return 1;
    }
    const SharedBytes bytes{file->view(), file->owner()};
    const double before = ownMemory();
    print("to the first paint",
        median(runs,
            [&] {
                HexView view;
                view.resize(900, 1000);
                return timeOf([&] {
                    view.setBytes(bytes);
                    view.show();
                    QCoreApplication::processEvents(); // the window comes to be
                    view.viewport()->repaint();
                });
            }),
        "ms");
    HexView view;
    view.resize(900, 1000);
    view.setBytes(bytes);
    view.show();
    QCoreApplication::processEvents();
    print("jump to the end, painted",
        median(runs,
            [&] {
                view.selectBytes({});
                view.viewport()->repaint();
                return timeOf([&] {
                    view.selectBytes({bytes.view.size(), bytes.view.size()});
                    view.viewport()->repaint();
                });
            }),
        "ms");
    view.selectBytes({bytes.view.size() / 2, bytes.view.size() / 2});
    view.viewport()->repaint();
    print("memory for showing", ownMemory() - before, "MB");
    const std::pair<const char*, BytePattern> patterns[]{
        {"search for a text", BytePattern::ofBytes("no such text in it")},
        {"search for digits with any between", BytePattern::ofHex(u"DE AD BE ?? 01 23").pattern}};
    for (const auto& [what, pattern] : patterns)
        print(
            what, median(runs, [&] { return timeOf([&] { search(bytes.view, pattern); }); }), "ms");
    const std::string grep
        = "grep -c 'no such text in it' '" + std::string(argv[1]) + "' >/dev/null";
    print("grep -c for the same text",
        median(runs, [&] { return timeOf([&] { static_cast<void>(std::system(grep.c_str())); }); }),
        "ms");
    return 0;
}
