#pragma once

namespace tarnwick {

/// What the preferences of the update check mean. Times are seconds since 1 January 2001 00:00 UTC.
struct UpdatePreferences
{
    bool noUpdateCheck = false; ///< the user wants none
    double updateCheckInt = 0.0; ///< seconds between two checks; below 1.0: none is set
    double dateLastUpdateCheck = 0.0; ///< when the last check was started
};

/// The interval in force when none is set: 12 hours.
inline constexpr double usualUpdateInterval = 43200.0;

/// Seconds that have to pass between two checks: the stored interval where it is 1.0 or more, the
/// usual one otherwise (also for what is no number).
double intervalInForce(const UpdatePreferences& preferences);

/// Whether more than the interval in force has passed since the last check, and the user has not
/// refused checks. Not while the last check lies in the future: the clock was set back.
bool isUpdateCheckDue(const UpdatePreferences& preferences, double now);

} // namespace tarnwick
