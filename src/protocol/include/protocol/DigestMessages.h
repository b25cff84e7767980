#pragma once

#include "protocol/EngineLimits.h"
#include "protocol/EngineProtocol.h"
#include "protocol/MessageFields.h"

#include <array>

namespace tarnwick {

/// Messages on what pages are made of, so that equal ones need not be drawn to be known as equal.

constexpr int maximumDigestedPages = 1000; ///< pages whose digests are told in one go

/// What a page's look is made of, in 32 bytes.
struct EnginePageDigest
{
    int object = 0; ///< number of the page's object
    bool isKnown = false; ///< else something of it could not be read, or there was too much of it
    std::array<std::uint64_t, 4> digest = {}; ///< SHA-256; zeros where it is not known

    static constexpr void describe(auto& fields, auto& page)
    {
        fields.number(page.object, 0, maximumObjectNumber);
        fields.flag(page.isKnown);
        for (auto& part : page.digest)
            fields.number(part);
    }
};

struct DigestResult
{
    std::vector<EnginePageDigest> pages; ///< as many as were asked for and exist

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.list(message.pages, maximumDigestedPages);
    }
};

/// How streams are told apart.
enum class EngineDigestForm : std::uint8_t
{
    isOfContent, ///< by the bytes that are stored
    isOfPlace, ///< by where they stand in the file: for versions of one file, which share the place
};

/// Digests of pages over all that their look is made of: contents, resources, boxes, rotation,
/// annotations with what they inherit, and what of the document concerns every page. Other pages,
/// the logical structure and metadata are not part of it.
struct DigestRequest
{
    static constexpr EngineRequest kind = EngineRequest::isDigest;
    using Result = DigestResult;

    int first = 0;
    int count = 0;
    EngineDigestForm form = EngineDigestForm::isOfContent;

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.number(message.first, 0, maximumPageCount);
        fields.number(message.count, 0, maximumDigestedPages);
        fields.choice(message.form, EngineDigestForm::isOfPlace);
    }
};

} // namespace tarnwick
