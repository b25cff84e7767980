#pragma once

namespace tarnwick {

class DocumentWindow;

/// Where windows stand: remembered in the settings for each kind of window.
namespace WindowPlace {

/// Puts a window that is about to be shown for the first time in its place: a little below and to
/// the right of the latest window of its kind that shows, else where the last one of its kind was,
/// else at its own size where the desktop puts it. Never larger than the screen, and what was
/// remembered comes back into it as a whole.
void restore(DocumentWindow& window);

/// Remembers a window's size and place for the next one of its kind.
void save(const DocumentWindow& window);

}

} // namespace tarnwick
