#pragma once

#include "analysis/SharedBytes.h"
#include "text/TextStorage.h"

#include <utility>

namespace tarnwick {

/// Bytes as they are copied: one line of two digits each, with blanks between them ("DE AD BE EF").
class HexDigits : public TextStorage
{
public:
    explicit HexDigits(SharedBytes bytes)
        : theBytes(std::move(bytes))
    {
    }

    qsizetype lineCount() const override { return 1; }
    qsizetype lineLength(qsizetype index) const override;
    TextLine line(
        qsizetype index, qsizetype position = 0, qsizetype count = 1'000'000) const override;

private:
    SharedBytes theBytes;
};

} // namespace tarnwick
