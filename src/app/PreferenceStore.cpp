#include "PreferenceStore.h"

#include "settings/StoredValues.h"

#include <QDateTime>
#include <QSettings>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

const QString noUpdateCheckKey = u"noUpdateCheck"_s;
const QString updateIntervalKey = u"updateCheckInt"_s;
const QString lastUpdateCheckKey = u"dateLastUpdateCheck"_s;
const QString thumbnailKey = u"showThumbnail"_s;
const QString rawSourceKey = u"showRawSource"_s;
const QString summarySourceKey = u"showSummarySource"_s;

constexpr qint64 referenceDate = 978'307'200'000; // 1 January 2001 in milliseconds since 1970

#ifdef TARNWICK_UPDATE_CHECK_BY_DEFAULT
constexpr bool refusedByDefault = false;
#else
constexpr bool refusedByDefault = true;
#endif

} // namespace

UpdatePreferences PreferenceStore::readUpdatePreferences()
{
    return {
        .noUpdateCheck = StoredValues::flag(noUpdateCheckKey, refusedByDefault),
        .updateCheckInt = StoredValues::number(updateIntervalKey),
        .dateLastUpdateCheck = StoredValues::number(lastUpdateCheckKey),
    };
}

void PreferenceStore::storeNoUpdateCheck(bool noUpdateCheck)
{
    QSettings().setValue(noUpdateCheckKey, noUpdateCheck);
}

void PreferenceStore::storeUpdateInterval(double seconds)
{
    QSettings().setValue(updateIntervalKey, seconds);
}

void PreferenceStore::storeLastUpdateCheck(double time)
{
    QSettings().setValue(lastUpdateCheckKey, time);
}

PreferenceStore::Flags PreferenceStore::readFlags()
{
    return {
        .showThumbnail = StoredValues::flag(thumbnailKey),
        .showRawSource = StoredValues::flag(rawSourceKey),
        .showSummarySource = StoredValues::flag(summarySourceKey),
    };
}

void PreferenceStore::storeFlags(const Flags& flags)
{
    QSettings settings;
    settings.setValue(thumbnailKey, flags.showThumbnail);
    settings.setValue(rawSourceKey, flags.showRawSource);
    settings.setValue(summarySourceKey, flags.showSummarySource);
}

double PreferenceStore::currentTime()
{
    return static_cast<double>(QDateTime::currentMSecsSinceEpoch() - referenceDate) / 1000.0;
}

} // namespace tarnwick
