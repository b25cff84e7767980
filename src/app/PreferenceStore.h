#pragma once

#include "Preferences.h"

namespace tarnwick {

/// The preferences in the user's settings (QSettings), under their keys "noUpdateCheck",
/// "updateCheckInt", "dateLastUpdateCheck", "showThumbnail", "showRawSource", "showSummarySource".
/// Values that are absent or of the wrong kind, infinite numbers among them, read as false and 0.0.
namespace PreferenceStore {

/// Which of the three view flags are on.
struct Flags
{
    bool showThumbnail = true;
    bool showRawSource = false;
    bool showSummarySource = false;
};

/// Where "noUpdateCheck" is absent, or no switch, it is what the program was built with.
UpdatePreferences readUpdatePreferences();
void storeNoUpdateCheck(bool noUpdateCheck);
void storeUpdateInterval(double seconds);
void storeLastUpdateCheck(double time);

Flags readFlags();
void storeFlags(const Flags& flags);

/// Seconds since 1 January 2001 00:00 UTC, with fractions.
double currentTime();

}

} // namespace tarnwick
