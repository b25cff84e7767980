#include "analysis/Findings.h"

#include "FindingList.h"
#include "analysis/SourceLexer.h"
#include "analysis/StructureWords.h"

#include <algorithm>

namespace tarnwick {

namespace {

using Code = FindingCode;

constexpr std::array<FindingRule, findingCodeCount> rules{{
    {Code::isNoHeader, "no-header", "7.5.2", true},
    {Code::isBytesBeforeHeader, "bytes-before-header", "7.5.2", true},
    {Code::isNoMarker, "no-marker", "7.5.5", true},
    {Code::isBytesBehindMarker, "bytes-behind-marker", "7.5.5", true},
    {Code::isMarkerInObject, "marker-in-object", "7.5.5", false},
    {Code::isNoStartxref, "no-startxref", "7.5.5", true},
    {Code::isStartxrefElsewhere, "startxref-elsewhere", "7.5.5", true},
    {Code::isPrevElsewhere, "prev-elsewhere", "7.5.6", true},
    {Code::isPrevLoop, "prev-loop", "7.5.6", true},
    {Code::isTableBroken, "table-broken", "7.5.4", true},
    {Code::isTableEntryElsewhere, "table-entry-elsewhere", "7.5.4", true},
    {Code::isLengthDifferent, "length-differs", "7.3.8.2", true},
    {Code::isStreamEndless, "stream-endless", "7.3.8.1", true},
    {Code::isObjectTwice, "object-twice", "7.3.10", true},
    {Code::isObjectNotListed, "object-not-listed", "7.3.10", false},
    {Code::isObjectsHidden, "objects-hidden", "7.5.7", false},
    {Code::isLinearized, "linearized", "Annex F", false},
    {Code::isEncrypted, "encrypted", "7.6", false},
    {Code::isJavaScript, "javascript", "12.6.4.17", false},
    {Code::isLaunch, "launch", "12.6.4.6", false},
    {Code::isSubmitForm, "submit-form", "12.7.6.2", false},
    {Code::isEmbeddedFile, "embedded-file", "7.11.4", false},
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
