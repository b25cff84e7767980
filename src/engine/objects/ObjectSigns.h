#pragma once

#include "ObjectRoles.h"
#include "protocol/SignMessages.h"

#include <optional>

namespace tarnwick {

/// What objects are known by, as many as an answer has room for and a few seconds suffice for.
/// @param roles of the document, kept from one request to the next.
/// @returns FZ_ERROR_NONE.
int readSigns(const EngineDocument& document, const SignRequest& request,
    std::optional<ObjectRoles>& roles, SignResult& result);

} // namespace tarnwick
