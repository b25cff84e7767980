#pragma once

#include "EngineDocument.h"
#include "protocol/SignMessages.h"

#include <string_view>
#include <vector>

namespace tarnwick {

/// What the objects of a document are to a person: told by what they say of themselves, else by the
/// way that leads to them from the trailer. Going through all of them takes about a microsecond for
/// each.
class ObjectRoles
{
public:
    explicit ObjectRoles(const EngineDocument& document);

    /// @param object of that number, for one that nothing leads to; null if it cannot be read.
    EngineObjectRole roleOf(int number, pdf_obj* object) const;
    bool isReached(int number) const;

private:
    void visit(pdf_obj* object, EngineObjectRole role, int depth);
    void reach(pdf_obj* reference, EngineObjectRole role);

    const EngineDocument& theDocument;
    fz_context* theContext;
    std::vector<EngineObjectRole> theRoles; ///< by number
    std::vector<bool> theIsReached;
    std::vector<int> theNext; ///< reached, and not gone through
};

} // namespace tarnwick
