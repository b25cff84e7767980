#pragma once

class QString;
class QToolButton;

namespace tarnwick {

/// The cross at the end of a strip that Escape closes as well.
/// @param name for screen readers. @returns a new button; whoever lays it out owns it.
QToolButton* newCloseButton(const QString& name);

} // namespace tarnwick
