#pragma once

#include "LongNames.h"
#include "protocol/SignMessages.h"

#include <string>
#include <vector>

namespace tarnwick {

/// Spells values so that two that mean the same are spelled the same: entries in the order of their
/// keys, whole numbers without a point, strings as their bytes.
class CanonicalObject
{
public:
    explicit CanonicalObject(const EngineDocument& document);

    /// What of a dictionary says how a stream is packed.
    enum class Packing
    {
        isNone, ///< it belongs to no stream
        isKept, ///< all of it but Length counts
        isLeftOut,
    };

    /// @param object a value, resolved.
    void spell(pdf_obj* object, Packing packing);

    /// The value, without the numbers that it refers to. Deeper than maximumObjectDepth, and behind
    /// longestObjectText, nothing is told apart.
    const std::string& text() const { return theText; }
    const std::vector<EngineObjectLink>& links() const { return theLinks; }

private:
    void put(pdf_obj* object, int depth, std::uint64_t path, bool isUpward);
    void putReference(pdf_obj* reference, int depth, std::uint64_t path, bool isUpward);
    void putDictionary(pdf_obj* dictionary, int depth, std::uint64_t path);
    void putBytes(char kind, std::string_view bytes);

    const EngineDocument& theDocument;
    fz_context* theContext;
    LongNames theLongNames;
    Packing thePacking = Packing::isNone;
    std::string theText;
    std::vector<EngineObjectLink> theLinks;
};

} // namespace tarnwick
