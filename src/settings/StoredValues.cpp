#include "settings/StoredValues.h"

#include <QSettings>

#include <algorithm>
#include <cmath>

namespace tarnwick {

bool StoredValues::flag(const QString& key, bool absent)
{
    const QString text = QSettings().value(key).toString().toLower();
    if (text == QLatin1String("true") || text == QLatin1String("1"))
        return true;
    if (text == QLatin1String("false") || text == QLatin1String("0"))
        return false;
    return absent;
}

double StoredValues::number(const QString& key, double absent)
{
    bool isNumber = false;
    const double value = QSettings().value(key).toDouble(&isNumber);
    return isNumber && std::isfinite(value) ? value : absent;
}

int StoredValues::length(const QString& key, int absent)
{
    constexpr double longest = 100'000;
    return static_cast<int>(std::clamp(number(key, absent), 0.0, longest));
}

} // namespace tarnwick
