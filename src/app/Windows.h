#pragma once

namespace tarnwick {

class AppDelegate;

/// Tells the delegate's registries how the program's windows are made.
void registerWindows(AppDelegate& delegate);

} // namespace tarnwick
