#pragma once

#include "text/PlainTextStorage.h"

#include <optional>

namespace tarnwick {

/// The text of an object, in which references to others are links.
class ReferringText : public PlainTextStorage
{
public:
    using PlainTextStorage::PlainTextStorage;

    std::optional<TextRange> linkAt(TextPosition position) const override;
    /// The object that the link at a place leads to.
    std::optional<int> targetAt(TextPosition position) const;
};

} // namespace tarnwick
