#include "ByteFinder.h"

#include <QElapsedTimer>

#include <utility>
#include <vector>

namespace tarnwick {

namespace {

constexpr int reportPeriod = 30; ///< milliseconds

using Blocks = std::vector<ByteMatches::Block>;

void searchAll(std::string_view bytes, const BytePattern& pattern, const std::stop_token& stop,
    const std::function<void(Blocks)>& report)
{
    Blocks blocks;
    QElapsedTimer sinceReport;
    sinceReport.start();
    for (std::size_t at = 0; at < bytes.size() && !stop.stop_requested();) {
        blocks.push_back(ByteMatches::search(bytes, pattern, at));
        at = blocks.back().end;
        if (sinceReport.hasExpired(reportPeriod)) {
            report(std::exchange(blocks, {}));
            sinceReport.restart();
        }
    }
    report(std::move(blocks));
}

} // namespace

ByteFinder::ByteFinder(QObject* parent)
    : QObject(parent)
{
}

ByteFinder::~ByteFinder() = default;

void ByteFinder::start(const SharedBytes& bytes, const BytePattern& pattern)
{
    theWork.abandon();
    theBytes = bytes;
    theMatches = ByteMatches(theBytes.view, pattern);
    theWork.start(
        [this, bytes, pattern](const std::stop_token& stop, const Work::Report& report) {
            searchAll(bytes.view, pattern, stop, [this, &report](Blocks blocks) {
                report.deliver([this, blocks = std::move(blocks)] {
                    for (const ByteMatches::Block& block : blocks)
                        theMatches.add(block);
                    emit advanced();
                });
            });
        },
        [this] { emit advanced(); });
}

int ByteFinder::percent() const
{
    const std::size_t size = theBytes.view.size();
    return size == 0 ? 100
                     : static_cast<int>(100.0 * static_cast<double>(theMatches.searchedTo())
                         / static_cast<double>(size));
}

} // namespace tarnwick
