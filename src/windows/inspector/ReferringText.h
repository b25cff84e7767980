#pragma once

#include "text/PlainTextStorage.h"
#include "text/SyntaxTextStorage.h"

#include <optional>

namespace tarnwick {

/// The reference to an object that holds a place of a text or ends there. The reference stands in
/// one line. @returns nothing where there is none.
std::optional<TextRange> referenceRange(const TextStorage& text, TextPosition position);
/// The object that it leads to.
std::optional<int> referenceTarget(const TextStorage& text, TextPosition position);

/// A text in which references to objects are links.
template<class Text> class Referring : public Text
{
public:
    using Text::Text;

    std::optional<TextRange> linkAt(TextPosition position) const override
    {
        return referenceRange(*this, position);
    }
};
using ReferringText = Referring<PlainTextStorage>;
using ReferringSyntax = Referring<SyntaxTextStorage>;

} // namespace tarnwick
