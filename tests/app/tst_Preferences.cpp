#include "app/Preferences.h"

#include <QTest>

#include <cmath>
#include <limits>

class TestPreferences : public QObject
{
    Q_OBJECT

private slots:
    void checkIsDue_data();
    void checkIsDue();
};

void TestPreferences::checkIsDue_data()
{
    QTest::addColumn<bool>("refused");
    QTest::addColumn<double>("interval");
    QTest::addColumn<double>("secondsSinceLast");
    QTest::addColumn<bool>("expected");
    const auto row = [](const char* name, bool refused, double interval, double secondsSinceLast,
                         bool expected) {
        QTest::newRow(name) << refused << interval << secondsSinceLast << expected;
    };
    constexpr double day = 86400.0;
    row("refused", true, 0.0, day, false);
    row("exactly an hour", false, 3600.0, 3600.0, false);
    row("a second over an hour", false, 3600.0, 3601.0, true);
    row("more than a second of a second", false, 1.0, 1.5, true);
    row("12 hours stand for less than a second", false, std::nextafter(1.0, 0.0), 43200.0, false);
    row("12 hours are over", false, 0.0, 43201.0, true);
    row("12 hours stand for a negative interval", false, -3600.0, 43200.0, false);
    row("12 hours stand for no number", false, std::numeric_limits<double>::quiet_NaN(), 43201.0,
        true);
    row("the clock was set back", false, 3600.0, -day, false);
}

void TestPreferences::checkIsDue()
{
    QFETCH(bool, refused);
    QFETCH(double, interval);
    QFETCH(double, secondsSinceLast);
    constexpr double now = 812'345'678.0;
    QTEST(isUpdateCheckDue({refused, interval, now - secondsSinceLast}, now), "expected");
}

QTEST_APPLESS_MAIN(TestPreferences)
#include "tst_Preferences.moc"
