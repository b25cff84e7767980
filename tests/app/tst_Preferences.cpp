#include "Preferences.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnwick;

class TestPreferences : public QObject
{
    Q_OBJECT

private slots:
    void checkIsDue();
};

void TestPreferences::checkIsDue()
{
    const auto isDue = [](double interval, double secondsSinceLast, bool isRefused = false) {
        constexpr double now = 812'345'678.0;
        return isUpdateCheckDue({isRefused, interval, now - secondsSinceLast}, now);
    };
    QVERIFY(!isDue(3600.0, 3600.0));
    QVERIFY(isDue(3600.0, 3601.0));
    QVERIFY(!isDue(3600.0, 3601.0, true));
    QVERIFY(isDue(1.0, 1.5));
    QVERIFY(!isDue(3600.0, -86400.0)); // the clock was set back
    // 12 hours stand for what is no interval.
    for (const double interval :
        {0.0, std::nextafter(1.0, 0.0), -3600.0, std::numeric_limits<double>::quiet_NaN()}) {
        QVERIFY(!isDue(interval, 43200.0));
        QVERIFY(isDue(interval, 43201.0));
    }
}

QTEST_APPLESS_MAIN(TestPreferences)
#include "tst_Preferences.moc"
