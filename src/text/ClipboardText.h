#pragma once

#include "text/TextPosition.h"
#include "text/TextStorage.h"

#include <memory>

class QWidget;

namespace tarnwick {

/// Gives parts of a text to the system's clipboards.
namespace ClipboardText {

/// UTF-16 units that are copied at most: programs that paste more stall, and the clipboard keeps
/// the text in memory.
inline constexpr qsizetype mostUnits = 32 * 1024 * 1024;
/// Units that the primary selection offers at most. It changes with every drag, so it is made only
/// when some program asks for it, which then waits for it.
inline constexpr qsizetype mostPrimaryUnits = 4 * 1024 * 1024;

/// Copies a range to the clipboard. A long one is collected while the event loop goes on, with a
/// progress dialog that cancels it; of a longer one than mostUnits the user may have the beginning.
/// @param window whose window the dialogs belong to; when it is destroyed before the end, nothing
/// is
///   copied.
void copy(std::shared_ptr<const TextStorage> storage, TextRange range, QWidget* window);

/// Offers a range for pasting with the middle mouse button, where the system has that.
void offerAsPrimary(std::shared_ptr<const TextStorage> storage, TextRange range);

} // namespace ClipboardText

} // namespace tarnwick
