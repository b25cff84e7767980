#pragma once

#include "protocol/EngineLimits.h"
#include "protocol/EngineProtocol.h"
#include "protocol/MessageFields.h"

namespace tarnwick {

/// Messages on a document as a whole: what the engine had to mend in order to read it, and what it
/// cannot read or draw as it is meant.

enum class EngineFindingCode : std::uint8_t
{
    isRebuilt, ///< the cross-reference was of no use; text: what the library says of it
    isRebuiltLater, ///< likewise, while the page tree was read
    isPageCountDifferent, ///< said: Count of the page tree's root; found: pages
    isPageInside, ///< object: a node whose Kids hold a dictionary instead of a reference
    isPageUnreadable, ///< object: a kid of the page tree
    isPageTreeLoop, ///< object: a node that the tree comes back to
    isEntryElsewhere, ///< object; said: the offset where a cross-reference stream has it
    isFontNotEmbedded, ///< page, object; text: its name
    isImageLost, ///< page, object; text: the filter that is unknown, empty for an unreadable one
    isLinksLost, ///< page; said: how many annotations there are, -1 where they cannot be read
    isPageSizeUnknown, ///< page, which has no MediaBox with an area
    isLabelsLost, ///< page: the first one whose label is beyond maximumLabelUnits
};
constexpr std::size_t engineFindingCodes = 12;
constexpr std::size_t mostEngineFindings = 100; ///< of each code; more are counted

struct EngineFinding
{
    EngineFindingCode code = EngineFindingCode::isRebuilt;
    int page = -1; ///< -1 for none
    int object = 0; ///< 0 for none
    std::int64_t said = 0;
    std::int64_t found = 0;
    std::string text; ///< printable ASCII

    static constexpr void describe(auto& fields, auto& finding)
    {
        fields.choice(finding.code, EngineFindingCode::isLabelsLost);
        fields.number(finding.page, -1, maximumPageCount - 1);
        fields.number(finding.object, 0, maximumObjectNumber);
        fields.number(finding.said);
        fields.number(finding.found);
        fields.text(finding.text, longestReason);
    }
};

/// The encryption as the engine undoes it (ISO 32000-2, 7.6).
struct EngineEncryption
{
    bool isThere = false;
    int version = 0; ///< V
    int revision = 0; ///< R
    int keyBits = 0;
    std::string method; ///< "RC4", "AES"; printable ASCII
    std::int32_t permissions = -1; ///< P, a bit for each permission
    bool hidesMetadata = true;

    static constexpr void describe(auto& fields, auto& encryption)
    {
        fields.flag(encryption.isThere);
        fields.number(encryption.version, 0, 99);
        fields.number(encryption.revision, 0, 99);
        fields.number(encryption.keyBits, 0, 9999);
        fields.text(encryption.method, longestReason);
        fields.number(encryption.permissions);
        fields.flag(encryption.hidesMetadata);
    }
};

struct CheckResult
{
    std::vector<EngineFinding> findings; ///< in the order of their codes
    PackedItems<std::uint32_t> counts; ///< of each code, told or not
    EngineEncryption encryption;
    int members = 0; ///< objects in use that lie in object streams
    int objectStreams = 0; ///< that hold them
    int pagesLookedAt = 0; ///< for fonts and images, from the first on

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.list(message.findings, engineFindingCodes * mostEngineFindings);
        fields.items(message.counts, engineFindingCodes);
        fields.part(message.encryption);
        fields.number(message.members, 0, maximumObjectNumber);
        fields.number(message.objectStreams, 0, maximumObjectNumber);
        fields.number(message.pagesLookedAt, 0, maximumPageCount);
    }
};

/// What is to be said of the document. An engine that has done nothing else knows best: reading
/// pages may have the library look for all objects anew.
struct CheckRequest
{
    static constexpr EngineRequest kind = EngineRequest::isCheck;
    using Result = CheckResult;

    static constexpr void describe(auto&, auto&) { }
};

} // namespace tarnwick
