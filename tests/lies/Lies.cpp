#include "Lies.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include <unistd.h>

namespace tarnwick {

namespace {

constexpr float infinite = std::numeric_limits<float>::infinity();
constexpr float none = std::numeric_limits<float>::quiet_NaN();
constexpr std::uint32_t countless = 0xfffffff0u;

void done(Teller& teller, const Question& question, const PayloadWriter& result)
{
    teller.answer(question, EngineAnswer::isDone, result);
}

void putTarget(PayloadWriter& result, int page, float x, float y, std::string_view address)
{
    result.put(page);
    result.put(x);
    result.put(y);
    result.putText(address);
}

int detailOf(const Question& question)
{
    PayloadReader arguments(question.payload);
    arguments.take<int>();
    return arguments.take<std::uint8_t>();
}

/// A count and then nothing, or not what it counts.
template<std::size_t bytesBehind> void claimCount(Teller& teller, const Question& question)
{
    PayloadWriter result;
    if (question.kind != EngineRequest::isLinks)
        result.put(std::uint8_t{0}); // nothing is lost or cut
    result.put(countless);
    const std::string rest(bytesBehind, '\1');
    result.putBytes(rest.data(), rest.size());
    done(teller, question, result);
}

template<int pages> void claimPages(Teller& teller, const Question& question)
{
    teller.answer(question, EngineAnswer::isOpened, Teller::facts(pages));
}

void lockForEver(Teller& teller, const Question& question)
{
    PayloadWriter wasNotTried;
    wasNotTried.put(std::uint8_t{0});
    teller.answer(question, EngineAnswer::isLocked, wasNotTried);
}

void refuseAtLength(Teller& teller, const Question& question)
{
    PayloadWriter reason;
    reason.putText(std::string(1u << 20, 'r'));
    teller.answer(question, EngineAnswer::isRefused, reason);
}

void refuseInNoUtf8(Teller& teller, const Question& question)
{
    PayloadWriter reason;
    reason.putText("<b>\xff\xc3\x28 \xed\xa0\x80");
    teller.answer(question, EngineAnswer::isRefused, reason);
}

void measureWithoutEnd(Teller& teller, const Question& question)
{
    PayloadWriter result;
    PayloadReader arguments(question.payload);
    arguments.take<int>();
    const int count = arguments.take<int>();
    for (int page = 0; page < count; ++page) {
        for (const float side : {page % 3 == 0 ? none : infinite, -1e30f})
            result.put(side);
        result.put(std::uint8_t{255});
        result.putText(std::string(longestLabel, '\xff'));
    }
    done(teller, question, result);
}

void measureTooFew(Teller& teller, const Question& question)
{
    done(teller, question, {});
}

template<int difference> void drawOtherSize(Teller& teller, const Question& question)
{
    PayloadReader arguments(question.payload);
    arguments.takeBytes(4 * sizeof(int) + sizeof(double));
    const int width = arguments.take<int>();
    const int height = arguments.take<int>();
    PayloadWriter result;
    const std::string pixels(static_cast<std::size_t>(width * height * 4 + difference), '\x7f');
    result.putBytes(pixels.data(), pixels.size());
    done(teller, question, result);
}

/// The beginning of a tile in single bytes, the rest at once.
void drawByteByByte(Teller& teller, const Question& question)
{
    PayloadReader arguments(question.payload);
    arguments.takeBytes(4 * sizeof(int) + sizeof(double));
    const int width = arguments.take<int>();
    const int height = arguments.take<int>();
    EngineFrame head;
    head.size = static_cast<std::uint32_t>(width * height * 4);
    head.request = question.number;
    head.kind = static_cast<std::uint8_t>(EngineAnswer::isDone);
    teller.send(head, {});
    const std::uint32_t slow = std::min(head.size, 20'000u);
    for (std::uint32_t byte = 0; byte < slow; ++byte)
        teller.write(std::string_view("\x7f", 1));
    teller.write(std::string(head.size - slow, '\x7f'));
}

void announceFourGigabytes(Teller& teller, const Question& question)
{
    EngineFrame head;
    head.size = countless;
    head.request = question.number;
    head.kind = static_cast<std::uint8_t>(EngineAnswer::isDone);
    teller.send(head, std::string(1u << 20, 'x'));
}

void answerForAnother(Teller& teller, const Question& question)
{
    Question other = question;
    other.number += 7;
    teller.tellTruth(other);
}

void answerTwice(Teller& teller, const Question& question)
{
    teller.tellTruth(question);
    teller.tellTruth(question);
}

void answerInNoKind(Teller& teller, const Question& question)
{
    EngineFrame head;
    head.request = question.number;
    head.kind = 200;
    teller.send(head, {});
}

void openAgain(Teller& teller, const Question& question)
{
    teller.answer(question, EngineAnswer::isOpened, Teller::facts(3));
}

/// Each engine on the file counts other pages, and has to be started anew.
void openDifferently(Teller& teller, const Question& question)
{
    for (int time = 0; time < 2; ++time)
        teller.answer(question, EngineAnswer::isOpened, Teller::facts(3 + ::getpid() % 997));
}

void reportWithoutEnd(Teller& teller, const Question& question)
{
    for (int done = 0;; done = (done + 1) % 1000) {
        PayloadWriter progress;
        progress.put(done);
        progress.put(1000);
        teller.answer(question, EngineAnswer::isProgress, progress);
    }
}

void tellLongText(Teller& teller, const Question& question)
{
    done(teller, question, textAnswer(detailOf(question), std::string(maximumPageCharacters, 'e')));
}

void tellManyLines(Teller& teller, const Question& question)
{
    std::string lines(maximumPageCharacters, '\n');
    for (std::size_t letter = 0; letter < lines.size(); letter += 2)
        lines[letter] = 'e';
    done(teller, question, textAnswer(detailOf(question), lines));
}

void tellNoUnicode(Teller& teller, const Question& question)
{
    PayloadWriter result = textAnswer(detailOf(question), std::string(4, '?'));
    std::string bytes = result.bytes();
    const std::uint32_t letters[] = {0xd800, 0, 0x110000, 0xffffffffu};
    std::memcpy(bytes.data() + bytes.find("?"), letters, sizeof letters);
    PayloadWriter broken;
    broken.putBytes(bytes.data(), bytes.size());
    done(teller, question, broken);
}

void placeTextNowhere(Teller& teller, const Question& question)
{
    PayloadWriter result = textAnswer(0, "nowhere");
    for (int corner = 0; detailOf(question) == 1 && corner < 7 * 8; ++corner)
        result.put(corner % 3 == 0 ? none : corner % 3 == 1 ? -infinite : 3e38f);
    done(teller, question, result);
}

void linkToTheLimit(Teller& teller, const Question& question)
{
    PayloadWriter result;
    result.put(maximumLinks);
    const std::string address = "http://example.com/" + std::string(800, 'a');
    for (std::uint32_t link = 0; link < maximumLinks; ++link)
        putLink(result, {0, 0, 612, 792}, -1, address);
    done(teller, question, result);
}

void linkToNowhere(Teller& teller, const Question& question)
{
    PayloadWriter result;
    result.put(std::uint32_t{4});
    putLink(result, {none, infinite, -infinite, 3e38f}, 0x7fffffff, "file:///etc/passwd");
    putLink(result, {50, 50, 50, 50}, -77, "\xff\xfe\xed\xa0\x80");
    putLink(result, {90, 90, -90, -90}, 3, "javascript:alert(1)");
    putLink(result, {1, 1, 2, 2}, 2, std::string(64, '\0'));
    done(teller, question, result);
}

enum class Tree
{
    isFlat,
    isUnderOne,
    isDeep,
    isNonsense,
};

template<Tree tree> void outlineToTheLimit(Teller& teller, const Question& question)
{
    PayloadWriter result;
    result.put(std::uint8_t{1});
    result.put(maximumOutlineEntries);
    const std::string title(120, 't');
    for (std::uint32_t entry = 0; entry < maximumOutlineEntries; ++entry) {
        int depth = 0;
        if (tree == Tree::isUnderOne)
            depth = entry > 0;
        else if (tree == Tree::isDeep)
            depth = static_cast<int>(entry % maximumOutlineDepth);
        else if (tree == Tree::isNonsense)
            depth = static_cast<int>(entry * 2654435761u);
        putEntry(result, depth, title, static_cast<int>(entry));
    }
    done(teller, question, result);
}

void writeNothing(Teller& teller, const Question& question)
{
    done(teller, question, writtenAnswer(1u << 30));
}

/// A file of a terabyte that takes no memory, until somebody reads it.
void writeHoles(Teller& teller, const Question& question)
{
    constexpr std::uint64_t size = std::uint64_t{1} << 40;
    static_cast<void>(::ftruncate(teller.flat(), static_cast<off_t>(size)) == 0);
    done(teller, question, writtenAnswer(size));
}

} // namespace

PayloadWriter textAnswer(int detail, std::string_view latin1)
{
    PayloadWriter result;
    result.put(static_cast<std::uint8_t>(EngineLoss::isNone));
    result.put(static_cast<std::uint32_t>(latin1.size()));
    result.reserve(latin1.size() * (detail == 1 ? 36 : 4) + 64);
    for (const char letter : latin1)
        result.put(static_cast<std::uint32_t>(static_cast<unsigned char>(letter)));
    float x = 0;
    for (std::size_t letter = 0; detail == 1 && letter < latin1.size(); ++letter) {
        x = latin1[letter] == '\n' ? 0 : x + 0.5f;
        const float y = 20 + static_cast<float>(letter * 700 / latin1.size());
        for (const float corner : {x, y, x + 0.5f, y, x + 0.5f, y + 8, x, y + 8})
            result.put(corner);
    }
    if (detail != 2)
        return result;
    result.put(std::uint32_t{1});
    result.put(std::uint32_t{0});
    result.put(static_cast<std::uint32_t>(latin1.size()));
    result.put(12.0f);
    result.put(std::uint8_t{0});
    result.put(std::uint32_t{0});
    result.putText("Helvetica");
    return result;
}

void putLink(
    PayloadWriter& result, const std::array<float, 4>& area, int page, std::string_view address)
{
    for (const float edge : area)
        result.put(edge);
    putTarget(result, page, 10, 10, address);
}

void putEntry(PayloadWriter& result, int depth, std::string_view title, int page)
{
    result.put(depth);
    result.putText(title);
    putTarget(result, page, none, -infinite, "");
}

PayloadWriter writtenAnswer(std::uint64_t size)
{
    PayloadWriter result;
    result.put(size);
    result.put(std::uint32_t{0}); // objects that are lost
    result.put(std::uint32_t{0}); // pages that are
    return result;
}

const std::vector<Lie>& allLies()
{
    using enum EngineRequest;
    static const std::vector<Lie> lies = {
        {"two billion pages", isOpen, claimPages<2'000'000'000>},
        {"pages below none", isOpen, claimPages<-5>},
        {"as many pages as may be", isOpen, claimPages<maximumPageCount>},
        {"locked whatever the password", isOpen, lockForEver},
        {"refused at length", isOpen, refuseAtLength},
        {"refused in no UTF-8", isOpen, refuseInNoUtf8},
        {"opened twice", isOpen, answerTwice},
        {"other pages each time", isOpen, openDifferently},
        {"opened by another request", isOpen, answerForAnother},
        {"sides of no number and labels to the limit", isMeasure, measureWithoutEnd},
        {"no sizes", isMeasure, measureTooFew},
        {"a pixel too many", isTile, drawOtherSize<4>},
        {"a byte too few", isTile, drawOtherSize<-1>},
        {"a tile byte by byte", isTile, drawByteByByte},
        {"a tile of four gigabytes", isTile, announceFourGigabytes},
        {"a tile for another request", isTile, answerForAnother},
        {"a tile twice", isTile, answerTwice},
        {"a tile of no kind", isTile, answerInNoKind},
        {"opened instead of drawn", isTile, openAgain},
        {"reports of a tile", isTile, reportWithoutEnd},
        {"countless characters", isText, claimCount<16>},
        {"a line of three million characters", isText, tellLongText},
        {"one and a half million lines", isText, tellManyLines},
        {"characters of no Unicode", isText, tellNoUnicode},
        {"text at no place", isText, placeTextNowhere},
        {"countless links", isLinks, claimCount<1000>},
        {"links to the limit", isLinks, linkToTheLimit},
        {"links without area to no page", isLinks, linkToNowhere},
        {"countless entries", isOutline, claimCount<1000>},
        {"entries to the limit", isOutline, outlineToTheLimit<Tree::isFlat>},
        {"all entries below one", isOutline, outlineToTheLimit<Tree::isUnderOne>},
        {"entries as deep as may be", isOutline, outlineToTheLimit<Tree::isDeep>},
        {"entries of any depth", isOutline, outlineToTheLimit<Tree::isNonsense>},
        {"a file that is not there", isFlat, writeNothing},
        {"a file of a terabyte", isFlat, writeHoles},
        {"reports without end", isFlat, reportWithoutEnd},
    };
    return lies;
}

const Lie* lieNamed(std::string_view name)
{
    const std::vector<Lie>& lies = allLies();
    const auto lie = std::find_if(
        lies.begin(), lies.end(), [name](const Lie& one) { return one.name == name; });
    return lie == lies.end() ? nullptr : &*lie;
}

} // namespace tarnwick
