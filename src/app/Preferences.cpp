#include "Preferences.h"

namespace tarnwick {

double intervalInForce(const UpdatePreferences& preferences)
{
    return preferences.updateCheckInt >= 1.0 ? preferences.updateCheckInt : usualUpdateInterval;
}

bool isUpdateCheckDue(const UpdatePreferences& preferences, double now)
{
    const double elapsed = now - preferences.dateLastUpdateCheck;
    return !preferences.noUpdateCheck && intervalInForce(preferences) < elapsed;
}

} // namespace tarnwick
