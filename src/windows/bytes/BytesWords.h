#pragma once

#include "BytePattern.h"
#include "files/OffsetInput.h"
#include "text/HexView.h"

#include <QString>

namespace tarnwick {

/// What the window says of bytes, in sentences for the user.
namespace BytesWords {

/// "2,317 (0x90D)"
QString offset(std::size_t offset);
/// Where the caret stands or what is selected: "Offset 2,317 (0x90D), 4 bytes selected".
QString place(const HexStorage& bytes, HexView::Span selected);
/// What lies before the header and behind the last marker, with links to the two ("#before",
/// "#behind"), or that the file has no such thing. Empty where all is in order.
QString stray(const StrayBytes& stray, std::size_t size);
/// Why one cannot go there; empty without a problem.
QString problem(const OffsetInput& input, const QString& text, std::size_t size);
/// What is wrong with a pattern; empty without a problem.
QString problem(const BytePattern::Reading& reading);

}

} // namespace tarnwick
