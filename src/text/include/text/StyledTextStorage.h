#pragma once

#include "analysis/StyledText.h"
#include "text/TextStorage.h"

namespace tarnwick {

/// Serves the lines of a listing to a text view.
class StyledTextStorage : public TextStorage
{
public:
    explicit StyledTextStorage(StyledText text);

    qsizetype lineCount() const override;
    qsizetype lineLength(qsizetype index) const override;
    TextLine line(
        qsizetype index, qsizetype position = 0, qsizetype count = 1'000'000) const override;
    std::optional<std::size_t> lineOffset(qsizetype index) const override;

private:
    StyledText theText;
    qsizetype theLineCount;
};

} // namespace tarnwick
