#pragma once

#include "analysis/SyntaxColours.h"
#include "text/PlainTextStorage.h"

#include <memory>

namespace tarnwick {

/// PDF syntax as a text of coloured stretches: operators red as what ends a listing's objects,
/// names green as its dictionaries, strings blue as what stands for its streams; comments and the
/// data of inline images are faint.
class SyntaxTextStorage : public PlainTextStorage
{
public:
    /// @param text of the bytes that the colours were made of. @param colours never null.
    SyntaxTextStorage(const PlainTextStorage& text, std::shared_ptr<const SyntaxColours> colours)
        : PlainTextStorage(text)
        , theColours(std::move(colours))
    {
    }
    /// Makes both. May take a second for 100 MB, and be done in any thread.
    explicit SyntaxTextStorage(const SharedBytes& bytes)
        : PlainTextStorage(bytes)
        , theColours(std::make_shared<const SyntaxColours>(bytes.view))
    {
    }

    TextLine line(
        qsizetype index, qsizetype position = 0, qsizetype count = 1'000'000) const override;

private:
    std::shared_ptr<const SyntaxColours> theColours;
};

} // namespace tarnwick
