#include "settings/StoredValues.h"

#include <QSettings>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tarnwick {

bool StoredValues::flag(const QString& key, bool absent)
{
    const QString text = QSettings().value(key).toString().toLower();
    if (text == "true"_L1 || text == "1"_L1)
        return true;
    if (text == "false"_L1 || text == "0"_L1)
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
