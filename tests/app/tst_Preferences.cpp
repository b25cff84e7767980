#include "app/Preferences.h"

#include <QTest>

#include <limits>

class TestPreferences : public QObject
{
    Q_OBJECT

private slots:
    void intervalInForce_data();
    void intervalInForce();
    void checkIsDue_data();
    void checkIsDue();
};

void TestPreferences::intervalInForce_data()
{
    QTest::addColumn<double>("stored");
    QTest::addColumn<double>("expected");
    QTest::newRow("nothing stored") << 0.0 << 43200.0;
    QTest::newRow("half a second") << 0.5 << 43200.0;
    QTest::newRow("just below a second") << std::nextafter(1.0, 0.0) << 43200.0;
    QTest::newRow("a second") << 1.0 << 1.0;
    QTest::newRow("an hour") << 3600.0 << 3600.0;
    QTest::newRow("negative") << -3600.0 << 43200.0;
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << 43200.0;
}

void TestPreferences::intervalInForce()
{
    QFETCH(double, stored);
    QTEST(::intervalInForce({.updateCheckInt = stored}), "expected");
}

void TestPreferences::checkIsDue_data()
{
    QTest::addColumn<bool>("refused");
    QTest::addColumn<double>("interval");
    QTest::addColumn<double>("secondsSinceLast");
    QTest::addColumn<bool>("expected");
    constexpr double now = 812'345'678.0;
    QTest::newRow("never checked") << false << 0.0 << now << true;
    QTest::newRow("refused") << true << 0.0 << now << false;
    QTest::newRow("half of an hour") << false << 3600.0 << 1800.0 << false;
    QTest::newRow("exactly an hour") << false << 3600.0 << 3600.0 << false;
    QTest::newRow("a second over an hour") << false << 3600.0 << 3601.0 << true;
    QTest::newRow("an hour, 12 in force") << false << 0.5 << 3600.0 << false;
    QTest::newRow("13 hours, 12 in force") << false << 0.5 << 46800.0 << true;
    QTest::newRow("the clock was set back") << false << 3600.0 << -86400.0 << false;
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
