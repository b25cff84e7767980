#include "Lies.h"

#include <algorithm>
#include <limits>
#include <string>

#include <unistd.h>

namespace tarnwick {

namespace {

constexpr float infinite = std::numeric_limits<float>::infinity();
constexpr float none = std::numeric_limits<float>::quiet_NaN();
constexpr std::uint32_t countless = 0xfffffff0u;

template<typename Request> Request asked(const Question& question)
{
    return unpacked<Request>(question.payload).value_or(Request());
}

template<int pages> void claimPages(Teller& teller, const Question& question)
{
    teller.answer(question, Teller::facts(pages));
}

void lockForEver(Teller& teller, const Question& question)
{
    teller.answer(question, LockedAnswer{false});
}

void refuseAtLength(Teller& teller, const Question& question)
{
    PayloadWriter reason;
    reason.put(1u << 20);
    const std::string text(1u << 20, 'r');
    reason.putBytes(text.data(), text.size());
    teller.answer(question, EngineAnswer::isRefused, reason.bytes());
}

void measureWithoutEnd(Teller& teller, const Question& question)
{
    MeasureResult result;
    for (int page = 0; page < asked<MeasureRequest>(question).count; ++page)
        result.pages.push_back(
            {page % 3 == 0 ? none : infinite, -1e30f, true, std::string(longestLabel, '\xff')});
    teller.done(question, result);
}

void drawOtherSize(Teller& teller, const Question& question)
{
    const auto tile = asked<TileRequest>(question);
    const std::string pixels(static_cast<std::size_t>(tile.width * tile.height * 4), '\x7f');
    std::string result = packed(TileResult{PackedItems<std::uint32_t>(pixels)});
    result.resize(result.size() + 4, '\x7f');
    teller.answer(question, EngineAnswer::isDone, result);
}

/// The beginning of a tile in single bytes, the rest at once.
void drawByteByByte(Teller& teller, const Question& question)
{
    const auto tile = asked<TileRequest>(question);
    const std::string pixels(static_cast<std::size_t>(tile.width * tile.height * 4), '\x7f');
    const std::string result = packed(TileResult{PackedItems<std::uint32_t>(pixels)});
    EngineFrame head;
    head.size = static_cast<std::uint32_t>(result.size());
    head.request = question.number;
    head.kind = static_cast<std::uint8_t>(EngineAnswer::isDone);
    teller.send(head, {});
    const std::size_t slow = std::min<std::size_t>(head.size, 20'000);
    for (std::size_t byte = 0; byte < slow; ++byte)
        teller.write(std::string_view(result).substr(byte, 1));
    teller.write(std::string_view(result).substr(slow));
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
    teller.answer(question, Teller::facts(3));
}

void reportWithoutEnd(Teller& teller, const Question& question)
{
    for (int done = 0;; done = (done + 1) % 1000)
        teller.answer(question, ProgressAnswer{done, 1000});
}

void tellLongText(Teller& teller, const Question& question)
{
    const EngineTextDetail detail = asked<TextRequest>(question).detail;
    teller.done(question, textOf(detail, std::string(maximumPageCharacters, 'e')));
}

void tellManyLines(Teller& teller, const Question& question)
{
    std::string lines(maximumPageCharacters, '\n');
    for (std::size_t letter = 0; letter < lines.size(); letter += 2)
        lines[letter] = 'e';
    teller.done(question, textOf(asked<TextRequest>(question).detail, lines));
}

void linkToTheLimit(Teller& teller, const Question& question)
{
    const EngineLink link
        = {0, 0, 612, 792, {-1, 10, 10, "http://example.com/" + std::string(800, 'a')}};
    teller.done(question, LinksResult{std::vector<EngineLink>(maximumLinks, link)});
}

template<bool isDeep> void outlineToTheLimit(Teller& teller, const Question& question)
{
    OutlineResult result;
    result.loss = EngineLoss::isDamaged;
    for (std::uint32_t entry = 0; entry < maximumOutlineEntries; ++entry) {
        const int depth = isDeep ? static_cast<int>(entry % maximumOutlineDepth) : entry > 0;
        result.entries.push_back(
            {depth, std::string(120, 't'), {static_cast<int>(entry), none, -infinite, {}}});
    }
    teller.done(question, result);
}

/// A file of a terabyte that takes no memory, until somebody reads it.
void writeHoles(Teller& teller, const Question& question)
{
    constexpr std::uint64_t size = std::uint64_t{1} << 40;
    static_cast<void>(::ftruncate(teller.output(), static_cast<off_t>(size)) == 0);
    teller.done(question, WrittenResult{size, 0, {}, {}});
}

/// @param count of digests that are told besides those that were asked for.
template<int object, bool isKnown, std::size_t count>
void tellDigests(Teller& teller, const Question& question)
{
    teller.done(question,
        DigestResult{std::vector<EnginePageDigest>(1 + count, {object, isKnown, {1, 2, 3, 4}})});
}

enum class ObjectLie
{
    isMissingWithText,
    isNoAscii,
    isFilterless,
    isOfManyFilters,
    isAsLongAsMayBe,
};

template<ObjectLie lie> void tellOfObject(Teller& teller, const Question& question)
{
    ObjectResult result;
    result.state = EngineObjectState::isPresent;
    result.text = "<< >>";
    result.isStream = lie != ObjectLie::isFilterless;
    result.filters = {{"/FlateDecode", {}}};
    result.filterCount = 1;
    if (lie == ObjectLie::isMissingWithText)
        result.state = EngineObjectState::isMissing;
    else if (lie == ObjectLie::isNoAscii)
        result.text = "\xff\x1b]0;title\a";
    else if (lie == ObjectLie::isOfManyFilters)
        result.filters.resize(maximumFilters, {"/" + std::string(4000, 'F'), {}});
    else if (lie == ObjectLie::isAsLongAsMayBe)
        result.text = std::string(longestObjectText / 6, '\n')
            + std::string(longestObjectText / 6 * 5, '[');
    teller.done(question, result);
}

enum class CheckLie
{
    isUncounted,
    isOnNoPage,
    isBehindTheFile,
    isNoAscii,
    isOutOfOrder,
    isAsMuchAsMayBe,
};

template<CheckLie lie> void tellOfCheck(Teller& teller, const Question& question)
{
    using enum EngineFindingCode;
    CheckResult result;
    result.findings = {{isEntryElsewhere, -1, 5, 9, 0, {}}, {isImageLost, 0, 6, 0, 0, "/What"}};
    if (lie == CheckLie::isOnNoPage)
        result.findings[1].page = 3;
    else if (lie == CheckLie::isBehindTheFile)
        result.findings[0].said = std::int64_t{1} << 40;
    else if (lie == CheckLie::isNoAscii)
        result.findings[1].text = "\xff\x1b]0;title\a";
    else if (lie == CheckLie::isOutOfOrder)
        std::swap(result.findings[0], result.findings[1]);
    else if (lie == CheckLie::isAsMuchAsMayBe)
        result.findings.clear();
    std::vector<std::uint32_t> counts(engineFindingCodes);
    for (std::size_t code = 0; code < counts.size() && lie == CheckLie::isAsMuchAsMayBe; ++code) {
        counts[code] = 0xff000000u;
        result.findings.insert(result.findings.end(), mostEngineFindings,
            {static_cast<EngineFindingCode>(code), 2, maximumObjectNumber, 0, 0,
                std::string(longestReason, 'w')});
    }
    for (const EngineFinding& finding : result.findings)
        counts[static_cast<std::size_t>(finding.code)] += lie != CheckLie::isUncounted;
    result.counts = std::move(counts);
    teller.done(question, result);
}

enum class TableLie
{
    isStill,
    isFalling,
    isOutside,
    isOfNoKind,
    isOfFewReferences,
};

template<TableLie lie> void tellOfTable(Teller& teller, const Question& question)
{
    EngineTableRow row;
    row.number = 2;
    row.state = static_cast<std::uint8_t>(EngineObjectState::isPresent);
    TableResult result;
    result.length = result.next = 8;
    result.rows = std::vector{row, row};
    if (lie == TableLie::isOutside)
        row.offset = std::uint64_t{1} << 40;
    if (lie == TableLie::isOfNoKind || lie == TableLie::isOfFewReferences)
        row.container = 1;
    if (lie == TableLie::isOfFewReferences) {
        result.kinds = {{"Font"}};
        row.references = 3;
    }
    if (lie == TableLie::isStill)
        result.next = 0;
    if (lie != TableLie::isFalling)
        result.rows = std::vector{row};
    teller.done(question, result);
}

template<std::uint64_t size, EngineStreamEnd end>
void tellOfStream(Teller& teller, const Question& question)
{
    teller.done(question, StreamResult{size, end, "a remark"});
}

/// Objects that come again and again.
template<std::uint32_t next> void tellOfSigns(Teller& teller, const Question& question)
{
    const std::vector<EngineObjectSign> signs(next == 0 ? maximumSigns : 0);
    teller.done(question, SignResult{next, 1, 1, signs, {}});
}

/// Rows without end, and of numbers that no object has.
template<std::uint32_t number> void tellOfRows(Teller& teller, const Question& question)
{
    constexpr std::uint32_t count = maximumRows;
    teller.done(question,
        CrossReferenceResult{{{EngineSectionForm::isTable, 9, 9, 1, 1, true, false, count}},
            std::vector<EngineRow>(count, EngineRow{9, number, 0, 1, {}})});
}

void tellManyFacts(Teller& teller, const Question& question)
{
    FactsResult result;
    result.facts.assign(maximumFacts, {EngineFactKind::isName, std::string(longestFact, '\x1b')});
    teller.done(question, result);
}

template<int width, EnginePictureEnd end>
void tellOfPicture(Teller& teller, const Question& question)
{
    teller.done(question, PictureResult{width, maximumPictureSide, end, "a remark"});
}

} // namespace

TextResult textOf(EngineTextDetail detail, std::string_view latin1)
{
    TextResult result;
    std::vector<char32_t> characters;
    std::vector<EngineQuad> quads;
    float x = 0;
    for (const char letter : latin1) {
        x = letter == '\n' ? 0 : x + 0.5f;
        const float y = 20 + static_cast<float>(characters.size() * 700 / latin1.size());
        if (detail == EngineTextDetail::isWithQuads)
            quads.push_back({{{{x, y}, {x + 0.5f, y}, {x + 0.5f, y + 8}, {x, y + 8}}}});
        characters.push_back(static_cast<unsigned char>(letter));
    }
    result.characters = std::move(characters);
    result.quads = std::move(quads);
    if (detail == EngineTextDetail::isWithAttributes)
        result.runs
            = {{static_cast<std::uint32_t>(latin1.size()), 12, false, false, 0, "Helvetica"}};
    return result;
}

const std::vector<Lie>& allLies()
{
    using enum EngineRequest;
    static const std::vector<Lie> lies = {
        {"two billion pages", isOpen, claimPages<2'000'000'000>, "open"},
        {"as many pages as may be", isOpen, claimPages<maximumPageCount>},
        {"locked whatever the password", isOpen, lockForEver, "open"},
        {"refused at length", isOpen, refuseAtLength, "open"},
        {"opened twice", isOpen, answerTwice, nullptr},
        {"sides of no number and labels to the limit", isMeasure, measureWithoutEnd},
        {"the digest of a page of no object", isDigest, tellDigests<-1, true, 0>, "digest"},
        {"a digest that is not known", isDigest, tellDigests<1, false, 0>, "digest"},
        {"digests that nobody asked for", isDigest, tellDigests<1, true, 9>, "digest"},
        {"a pixel too many", isTile, drawOtherSize, "tile"},
        {"a tile byte by byte", isTile, drawByteByByte},
        {"a tile of four gigabytes", isTile, announceFourGigabytes, "tile"},
        {"a tile for another request", isTile, answerForAnother, "tile"},
        {"a tile twice", isTile, answerTwice, nullptr},
        {"a tile of no kind", isTile, answerInNoKind, "tile"},
        {"opened instead of drawn", isTile, openAgain, "tile"},
        {"reports of a tile", isTile, reportWithoutEnd, "tile"},
        {"a line of three million characters", isText, tellLongText},
        {"one and a half million lines", isText, tellManyLines},
        {"links to the limit", isLinks, linkToTheLimit},
        {"all entries below one", isOutline, outlineToTheLimit<false>},
        {"entries as deep as may be", isOutline, outlineToTheLimit<true>},
        {"a file of a terabyte", isFlat, writeHoles, "flat"},
        {"reports without end", isFlat, reportWithoutEnd, "flat"},
        {"what no object says", isObject, tellOfObject<ObjectLie::isMissingWithText>, "object"},
        {"an object of no ASCII", isObject, tellOfObject<ObjectLie::isNoAscii>, "object"},
        {"filters of no stream", isObject, tellOfObject<ObjectLie::isFilterless>, "object"},
        {"more filters than are counted", isObject, tellOfObject<ObjectLie::isOfManyFilters>,
            "object"},
        {"an object as long as may be", isObject, tellOfObject<ObjectLie::isAsLongAsMayBe>},
        {"a table without end", isTable, tellOfTable<TableLie::isStill>, "table"},
        {"an object twice in a table", isTable, tellOfTable<TableLie::isFalling>, "table"},
        {"an object behind the file", isTable, tellOfTable<TableLie::isOutside>, "table"},
        {"an object of no kind", isTable, tellOfTable<TableLie::isOfNoKind>, "table"},
        {"references that are not there", isTable, tellOfTable<TableLie::isOfFewReferences>,
            "table"},
        {"a stream beyond the limit", isStream,
            tellOfStream<usualStream + 1, EngineStreamEnd::isStopped>, "stream"},
        {"bytes of no stream", isStream, tellOfStream<10, EngineStreamEnd::isNone>, "stream"},
        {"a stream of holes", isStream, tellOfStream<usualStream, EngineStreamEnd::isWhole>},
        {"findings without a count", isCheck, tellOfCheck<CheckLie::isUncounted>, "check"},
        {"a finding on no page", isCheck, tellOfCheck<CheckLie::isOnNoPage>, "check"},
        {"a place behind the file", isCheck, tellOfCheck<CheckLie::isBehindTheFile>, "check"},
        {"findings of no ASCII", isCheck, tellOfCheck<CheckLie::isNoAscii>, "check"},
        {"findings out of order", isCheck, tellOfCheck<CheckLie::isOutOfOrder>, "check"},
        {"as many findings as may be", isCheck, tellOfCheck<CheckLie::isAsMuchAsMayBe>, ""},
        {"reports of a stream", isStream, reportWithoutEnd, "stream"},
        {"an object again and again", isSign, tellOfSigns<0>, "signs"},
        {"the same from the beginning", isSign, tellOfSigns<1>, "signs"},
        {"a row of no object", isCrossReference, tellOfRows<~0u>, "versions"},
        {"rows without end", isCrossReference, tellOfRows<7>},
        {"facts as many and as long as may be", isFacts, tellManyFacts},
        {"a picture of holes", isPicture,
            tellOfPicture<maximumPictureSide, EnginePictureEnd::isDrawn>},
        {"a picture beyond the limit", isPicture,
            tellOfPicture<maximumPictureSide + 1, EnginePictureEnd::isDrawn>, "picture"},
        {"pixels of no picture", isPicture, tellOfPicture<1, EnginePictureEnd::isUnreadable>,
            "picture"},
        {"a picture without width", isPicture, tellOfPicture<0, EnginePictureEnd::isDamaged>,
            "picture"},
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
