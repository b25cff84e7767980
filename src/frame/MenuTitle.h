#pragma once

#include <QString>

class QMenu;

namespace tarnwick {

/// A title as a menu's list shows it: numbered for the keyboard, no wider than a menu should be.
/// @param index from 0.
QString menuTitle(qsizetype index, const QString& title, const QMenu& menu);

} // namespace tarnwick
