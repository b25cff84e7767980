#include "TextFinder.h"

#include <QElapsedTimer>

#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

/// Units that a block has, about: searching one again takes a millisecond.
constexpr qsizetype blockUnits = 256 * 1024;
constexpr int reportPeriod = 30; ///< milliseconds

} // namespace

TextFinder::TextFinder(QObject* parent)
    : QObject(parent)
{
}

TextFinder::~TextFinder() = default;

void TextFinder::stop()
{
    theWork.abandon();
    theSearch.reset();
    theBlocks.clear();
    theBefore = 0;
    theIsComplete = false;
    theWanted.clear();
}

void TextFinder::start(std::shared_ptr<const TextStorage> storage, const QString& wanted,
    Qt::CaseSensitivity sensitivity, TextPosition from)
{
    stop();
    theWanted = wanted;
    theSensitivity = sensitivity;
    theStart = {from.line, 0};
    theSearch = std::make_shared<LineSearch>(std::move(storage), wanted, sensitivity);
    theWork.start(
        [this, search = *theSearch, from = theStart](
            const std::stop_token& stop, const Work::Report& report) {
            run(stop, search, from, [this, &report](Blocks blocks) {
                report.deliver([this, blocks = std::move(blocks)] { take(blocks); });
            });
        },
        [this] {
            theIsComplete = true;
            emit advanced();
        });
}

void TextFinder::run(const std::stop_token& stop, const LineSearch& search, TextPosition from,
    const std::function<void(Blocks)>& report)
{
    Blocks blocks;
    QElapsedTimer sinceReport;
    sinceReport.start();
    const TextRange all = search.everything();
    for (const TextRange part : {TextRange{from, all.end}, TextRange{all.begin, from}}) {
        TextPosition at = part.begin;
        while (at < part.end && !stop.stop_requested()) {
            Block block;
            block.range.begin = at;
            at = search.search({at, part.end}, blockUnits, [&block](TextRange) {
                ++block.count;
                return true;
            });
            block.range.end = at;
            blocks.push_back(block);
            if (sinceReport.hasExpired(reportPeriod)) {
                report(std::exchange(blocks, {}));
                sinceReport.restart();
            }
        }
    }
    report(std::move(blocks));
}

void TextFinder::take(const Blocks& blocks)
{
    for (const Block& block : blocks) {
        if (block.range.begin >= theStart) {
            theBlocks.push_back(block);
        } else {
            theBlocks.insert(theBlocks.begin() + static_cast<std::ptrdiff_t>(theBefore), block);
            ++theBefore;
        }
    }
    emit advanced();
}

qint64 TextFinder::count() const
{
    qint64 sum = 0;
    for (const Block& block : theBlocks)
        sum += block.count;
    return sum;
}

qint64 TextFinder::number(TextRange match) const
{
    qint64 number = 1;
    for (const Block& block : theBlocks) {
        if (block.range.end > match.begin) {
            theSearch->search({block.range.begin, match.begin}, 4 * blockUnits,
                [&number](TextRange) { return ++number > 0; });
            break;
        }
        number += block.count;
    }
    return number;
}

double TextFinder::progress() const
{
    if (!theSearch || theIsComplete)
        return 1;
    const qsizetype lines = theSearch->storage().lineCount();
    qsizetype searched = 0;
    if (theBefore > 0)
        searched += theBlocks[theBefore - 1].range.end.line;
    if (theBlocks.size() > theBefore)
        searched += theBlocks.back().range.end.line - theStart.line;
    return static_cast<double>(searched) / static_cast<double>(lines);
}

QList<TextRange> TextFinder::matches(TextRange range, qsizetype most) const
{
    QList<TextRange> found;
    if (theSearch && most > 0) {
        theSearch->search(range, 4 * blockUnits, [&found, most](TextRange match) {
            found.append(match);
            return found.size() < most;
        });
    }
    return found;
}

TextFinder::Answer TextFinder::firstIn(TextRange range) const
{
    TextPosition reached = range.begin; // known without a gap up to here
    for (const Block& block : theBlocks) {
        if (block.range.end <= reached || block.range.begin >= range.end)
            continue;
        if (block.range.begin > reached)
            return {Answer::Kind::isUnknown, {}, false};
        if (block.count > 0) {
            Answer answer{Answer::Kind::isNone, {}, false};
            theSearch->search(block.range, 4 * blockUnits, [&](TextRange match) {
                if (match.begin < range.begin)
                    return true;
                answer.kind
                    = match.begin < range.end ? Answer::Kind::isFound : Answer::Kind::isNone;
                answer.match = match;
                return false;
            });
            if (answer.kind == Answer::Kind::isFound)
                return answer;
        }
        reached = block.range.end;
    }
    return {reached < range.end ? Answer::Kind::isUnknown : Answer::Kind::isNone, {}, false};
}

TextFinder::Answer TextFinder::lastIn(TextRange range) const
{
    TextPosition reached = range.end;
    for (auto block = theBlocks.rbegin(); block != theBlocks.rend(); ++block) {
        if (block->range.begin >= reached || block->range.end <= range.begin)
            continue;
        if (block->range.end < reached)
            return {Answer::Kind::isUnknown, {}, false};
        if (block->count > 0) {
            Answer answer{Answer::Kind::isNone, {}, false};
            theSearch->search(block->range, 4 * blockUnits, [&](TextRange match) {
                if (match.begin >= range.end)
                    return false;
                if (match.begin >= range.begin)
                    answer = {Answer::Kind::isFound, match, false};
                return true;
            });
            if (answer.kind == Answer::Kind::isFound)
                return answer;
        }
        reached = block->range.begin;
    }
    return {range.begin < reached ? Answer::Kind::isUnknown : Answer::Kind::isNone, {}, false};
}

TextFinder::Answer TextFinder::next(TextPosition from) const
{
    const TextRange all = theSearch->everything();
    Answer answer = firstIn({from, all.end});
    if (answer.kind == Answer::Kind::isNone) {
        answer = firstIn({all.begin, from});
        answer.isWrapped = true;
    }
    return answer;
}

TextFinder::Answer TextFinder::previous(TextPosition before) const
{
    const TextRange all = theSearch->everything();
    Answer answer = lastIn({all.begin, before});
    if (answer.kind == Answer::Kind::isNone) {
        answer = lastIn({before, all.end});
        answer.isWrapped = true;
    }
    return answer;
}

} // namespace tarnwick
