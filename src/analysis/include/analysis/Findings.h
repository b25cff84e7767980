#pragma once

#include "analysis/pdfObjectCatalog.h"

#include <array>
#include <cstddef>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// What can be said of a file: from its source alone, and behind isEmbeddedFile by whoever reads it
/// as a document.
enum class FindingCode : unsigned char
{
    isNoHeader,
    isBytesBeforeHeader,
    isNoMarker,
    isBytesBehindMarker,
    isMarkerInObject,
    isNoStartxref,
    isStartxrefElsewhere,
    isPrevElsewhere,
    isPrevLoop,
    isTableBroken,
    isTableEntryElsewhere,
    isLengthDifferent,
    isStreamEndless,
    isObjectTwice,
    isObjectNotListed,
    isObjectsHidden,
    isHybrid,
    isLinearized,
    isEncrypted,
    isJavaScript,
    isLaunch,
    isSubmitForm,
    isEmbeddedFile,
    isRebuilt,
    isPageCountDifferent,
    isPageInside,
    isPageUnreadable,
    isPageTreeLoop,
    isStreamEntryElsewhere,
    isTextLost,
    isFontNotEmbedded,
    isImageLost,
    isLinksLost,
    isPageSizeUnknown,
    isLabelsLost,
};
inline constexpr std::size_t findingCodeCount = 35;

/// How much a finding matters to somebody who only wants to read the document.
enum class FindingWeight : unsigned char
{
    isFact, ///< not at all
    isDeviation, ///< readers may differ in what they make of the file
    isActive, ///< something acts, or is carried along
    isLoss, ///< something of the document is missing, or had to be guessed
};

/// What stands behind a finding.
struct FindingRule
{
    FindingCode code = FindingCode::isNoHeader;
    std::string_view name; ///< a word for scripts: "length-differs"
    std::string_view clause; ///< of ISO 32000-2
    /// Whether the file departs from that clause; otherwise it has what the clause describes.
    bool isDeviation = false;
    FindingWeight weight = FindingWeight::isFact;
};
const FindingRule& ruleOf(FindingCode code);

struct Finding
{
    FindingCode code = FindingCode::isNoHeader;
    std::size_t offset = 0; ///< the place in the file that it speaks of
    std::optional<std::size_t> object; ///< that it speaks of, by its place in the scan
    std::string sentence; ///< plain words, with the numbers; printable ASCII
};

/// Facts about a file, in the order of FindingCode and for one code in the order of the file.
struct Findings
{
    /// Of each code; more are counted.
    static constexpr std::size_t mostKept = 100;

    std::vector<Finding> list;
    std::array<std::size_t, findingCodeCount> counts{}; ///< by code, kept or not
    bool isComplete = false; ///< false for a check that was stopped
};

/// Looks through a scanned file for what may surprise those who work with it: where it departs from
/// the standard, and what it holds that acts or hides. Facts, each with its clause, no opinions.
///
/// Cross-reference streams and object streams are compressed and not looked into; isObjectsHidden
/// says how much that leaves out. May run on any thread; takes a few passes over the bytes, in
/// proportion to the file whatever it holds, and keeps nothing for each object.
Findings findFacts(const pdfObjectCatalog& catalog, std::stop_token stop = {});

/// The first object of a number that stands in the file without a record in the listing, whose
/// line rules pass over it: one that shares a line with others, or stands behind a line that reads
/// as structure, as a comment with the word "stream".
/// @returns a range as pdfObject::range() gives it, which may end far behind the object; nothing
///   where there is none.
std::optional<ByteRange> findUnlisted(const pdfObjectCatalog& catalog, std::int64_t objNo);

} // namespace tarnwick
