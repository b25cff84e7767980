#pragma once

#include <QString>

namespace tarnwick {

/// Single values in the user's settings (QSettings). They are the user's to edit, and what a file
/// holds in a value's place may be anything: a value of the wrong kind counts as absent.
namespace StoredValues {

/// A switch: "true" or "1" is on, "false" or "0" is off, in any case.
bool flag(const QString& key, bool absent = false);
/// A finite number.
double number(const QString& key, double absent = 0.0);
/// A length on the screen in device-independent pixels, at most what any screen has.
int length(const QString& key, int absent);

}

} // namespace tarnwick
