#pragma once

#include "EngineDocument.h"
#include "ObjectText.h"
#include "ObjectView.h"
#include "protocol/ObjectMessages.h"

#include <string>
#include <string_view>

namespace tarnwick {

/// Collects what is to be told of an object.
class FactSheet
{
public:
    /// @param result borrowed.
    FactSheet(const EngineDocument& document, FactsResult& result)
        : theDocument(document)
        , theText(document)
        , theResult(result)
    {
    }

    const EngineDocument& document() const { return theDocument; }
    void setKind(EngineObjectKind kind) { theResult.kind = kind; }
    /// @param text an empty one is no fact.
    void add(EngineFactKind kind, std::string_view text);
    /// A number of things, with their word.
    void addCount(EngineFactKind kind, std::int64_t count, std::string_view word = {});
    /// As in the file, on one line; of a reference to a short object what it says as well.
    void addValue(EngineFactKind kind, const ObjectView& value);
    std::string valueText(const ObjectView& value);

private:
    const EngineDocument& theDocument;
    ObjectText theText;
    FactsResult& theResult;
};

/// What a stream unpacks to, at most so many bytes; as far as it can be read.
std::string decodedBeginning(const EngineDocument& document, int number, std::size_t limit);

} // namespace tarnwick
