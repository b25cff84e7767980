#pragma once

#include "analysis/SourceLexer.h"
#include "analysis/SyntaxColours.h"

#include <optional>

namespace tarnwick {

/// Goes over PDF syntax stretch by stretch: a token, a comment or the data of an inline image each.
class SyntaxWalk
{
public:
    /// @param place what begin is. Precondition: as for SourceLexer.
    SyntaxWalk(std::string_view text, std::size_t begin, std::size_t end,
        SyntaxPlace place = SyntaxPlace::isUsual)
        : theText(text.substr(0, end))
        , theLexer(text, begin, end)
        , thePosition(begin)
        , thePlace(place)
    {
    }

    /// The next stretch, plain ones included; nothing at the end.
    std::optional<SyntaxStretch> next();
    /// What the end of the last one is.
    SyntaxPlace place() const { return thePlace; }

private:
    SyntaxStretch data();
    std::optional<SyntaxStretch> comment();
    SyntaxStretch word(const SourceToken& token);
    std::size_t endOfData(std::size_t begin) const;
    bool endsData(std::size_t place) const;

    std::string_view theText;
    SourceLexer theLexer;
    std::size_t thePosition; ///< up to where stretches have been given
    std::optional<SourceToken> theAhead; ///< found behind a comment
    SyntaxPlace thePlace;
};

} // namespace tarnwick
