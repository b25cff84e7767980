#include "analysis/Findings.h"

#include "FindingList.h"
#include "analysis/SourceLexer.h"
#include "analysis/StructureWords.h"

#include <algorithm>

namespace tarnwick {

namespace {

using Code = FindingCode;
using Weight = FindingWeight;

constexpr std::array<FindingRule, findingCodeCount> rules{{
    {Code::isNoHeader, "no-header", "7.5.2", true, Weight::isDeviation},
    {Code::isBytesBeforeHeader, "bytes-before-header", "7.5.2", true, Weight::isDeviation},
    {Code::isNoMarker, "no-marker", "7.5.5", true, Weight::isDeviation},
    {Code::isBytesBehindMarker, "bytes-behind-marker", "7.5.5", true, Weight::isDeviation},
    {Code::isMarkerInObject, "marker-in-object", "7.5.5", false, Weight::isFact},
    {Code::isNoStartxref, "no-startxref", "7.5.5", true, Weight::isDeviation},
    {Code::isStartxrefElsewhere, "startxref-elsewhere", "7.5.5", true, Weight::isDeviation},
    {Code::isPrevElsewhere, "prev-elsewhere", "7.5.6", true, Weight::isDeviation},
    {Code::isPrevLoop, "prev-loop", "7.5.6", true, Weight::isDeviation},
    {Code::isTableBroken, "table-broken", "7.5.4", true, Weight::isDeviation},
    {Code::isTableEntryElsewhere, "table-entry-elsewhere", "7.5.4", true, Weight::isDeviation},
    {Code::isLengthDifferent, "length-differs", "7.3.8.2", true, Weight::isDeviation},
    {Code::isStreamEndless, "stream-endless", "7.3.8.1", true, Weight::isDeviation},
    {Code::isObjectTwice, "object-twice", "7.3.10", true, Weight::isDeviation},
    {Code::isObjectNotListed, "object-not-listed", "7.3.10", false, Weight::isFact},
    {Code::isObjectsHidden, "objects-hidden", "7.5.7", false, Weight::isFact},
    {Code::isHybrid, "hybrid", "7.5.8.4", false, Weight::isFact},
    {Code::isLinearized, "linearized", "Annex F", false, Weight::isFact},
    {Code::isEncrypted, "encrypted", "7.6", false, Weight::isFact},
    {Code::isJavaScript, "javascript", "12.6.4.17", false, Weight::isActive},
    {Code::isLaunch, "launch", "12.6.4.6", false, Weight::isActive},
    {Code::isSubmitForm, "submit-form", "12.7.6.2", false, Weight::isActive},
    {Code::isEmbeddedFile, "embedded-file", "7.11.4", false, Weight::isActive},
    {Code::isRebuilt, "rebuilt", "7.5.4", true, Weight::isLoss},
    {Code::isPageCountDifferent, "page-count-differs", "7.7.3.2", true, Weight::isDeviation},
    {Code::isPageInside, "page-inside", "7.7.3.2", true, Weight::isDeviation},
    {Code::isPageUnreadable, "page-unreadable", "7.7.3.2", true, Weight::isLoss},
    {Code::isPageTreeLoop, "page-tree-loop", "7.7.3.2", true, Weight::isDeviation},
    {Code::isStreamEntryElsewhere, "stream-entry-elsewhere", "7.5.8.3", true, Weight::isDeviation},
    {Code::isTextLost, "text-lost", "7.8.2", false, Weight::isLoss},
    {Code::isFontNotEmbedded, "font-not-embedded", "9.9", false, Weight::isFact},
    {Code::isImageLost, "image-lost", "8.9.5", false, Weight::isLoss},
    {Code::isLinksLost, "links-lost", "12.5.6.5", false, Weight::isLoss},
    {Code::isPageSizeUnknown, "page-size-unknown", "7.7.3.3", true, Weight::isLoss},
    {Code::isLabelsLost, "labels-lost", "12.4.2", false, Weight::isLoss},
}};

} // namespace

const FindingRule& ruleOf(FindingCode code)
{
    return rules.at(static_cast<std::size_t>(code));
}

std::optional<PlacedHeader> headerAt(std::string_view bytes, std::size_t offset)
{
    constexpr std::size_t longest = 64;
    if (offset >= bytes.size())
        return std::nullopt;
    SourceLexer lexer(bytes, offset, offset + std::min(longest, bytes.size() - offset));
    const SourceToken number = lexer.next();
    const std::string_view before = bytes.substr(offset, number.begin - offset);
    if (number.kind != TokenKind::isInteger
        || !std::all_of(before.begin(), before.end(), isSourceSpace))
        return std::nullopt;
    const SourceToken generation = lexer.next();
    if (generation.kind != TokenKind::isInteger)
        return std::nullopt;
    const SourceToken word = lexer.next();
    if (word.kind != TokenKind::isKeyword
        || !bytes.substr(word.begin, word.end - word.begin).starts_with(LineWord::obj))
        return std::nullopt;
    return PlacedHeader{number.begin, word.begin + std::string_view(LineWord::obj).size(),
        number.number, generation.number};
}

Findings findFacts(const pdfObjectCatalog& catalog, std::stop_token stop)
{
    FindingList list;
    checkFrame(catalog, list);
    if (!stop.stop_requested())
        checkCrossReferences(catalog, list);
    if (!stop.stop_requested())
        checkObjects(catalog, checkStreams(catalog, list), list);
    if (!stop.stop_requested())
        checkNames(catalog, list, stop);
    Findings findings = list.take();
    std::stable_sort(
        findings.list.begin(), findings.list.end(), [](const Finding& one, const Finding& other) {
            return one.code != other.code ? one.code < other.code : one.offset < other.offset;
        });
    findings.isComplete = !stop.stop_requested();
    return findings;
}

} // namespace tarnwick
