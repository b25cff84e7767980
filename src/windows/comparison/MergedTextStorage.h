#pragma once

#include "compared/TextComparing.h"
#include "text/PlainTextStorage.h"

#include <memory>

namespace tarnwick {

/// Serves two compared texts in one to a view: what is in one of them alone is marked.
class MergedTextStorage : public PlainTextStorage
{
public:
    explicit MergedTextStorage(std::shared_ptr<const ComparedText> text);

    TextLine line(
        qsizetype index, qsizetype position = 0, qsizetype count = 1'000'000) const override;
    /// Where one of the changes stands. Precondition: there is such a change.
    TextRange changeRange(int change) const;
    const ComparedText& text() const { return *theText; }

private:
    std::shared_ptr<const ComparedText> theText;
};

} // namespace tarnwick
