#pragma once

namespace tarnwick {

class DocumentController;
class DocumentWindow;

/// The two menus that the frame itself fills.
namespace FrameMenus {

/// Keeps the window's menus named "recentMenu" (the files opened last, with an entry that clears
/// them) and "windowMenu" (after what it holds already, every window that shows) up to date. A
/// window without such a menu is left alone.
void keepFilled(DocumentWindow& window, DocumentController& controller);

}

} // namespace tarnwick
