#include "platform/frame/DocumentWindow.h"
#include "platform/frame/WindowPlace.h"

#include <QScreen>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

class TestWindowPlace : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void comesBackIntoTheScreen_data();
    void comesBackIntoTheScreen();

private:
    QTemporaryDir theFolder;
};

void TestWindowPlace::initTestCase()
{
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, theFolder.path());
    QCoreApplication::setOrganizationName(QStringLiteral("Test"));
}

void TestWindowPlace::comesBackIntoTheScreen_data()
{
    QTest::addColumn<QRect>("remembered");
    QTest::addColumn<QRect>("expected");
    // The screen has 800 x 800; a frame is allowed 40 above and 8 at the other sides.
    const auto row = [](const char* name, QRect remembered, QRect expected) {
        QTest::newRow(name) << remembered << expected;
    };
    row("a place within it stays", {100, 50, 300, 200}, {100, 50, 300, 200});
    row("filling it, as a maximized one may, stays", {0, 20, 800, 780}, {0, 20, 800, 780});
    row("over its lower right corner", {700, 750, 300, 200}, {492, 592, 300, 200});
    row("over its left edge", {-60, 50, 300, 200}, {8, 50, 300, 200});
    row("larger than it", {40, 50, 2000, 300}, {8, 50, 784, 300});
    row("on a screen that is gone", {3000, 100, 300, 200}, {500, 100, 300, 200});
}

void TestWindowPlace::comesBackIntoTheScreen()
{
    QFETCH(QRect, remembered);
    QFETCH(QRect, expected);
    QCOMPARE(QGuiApplication::primaryScreen()->availableSize(), QSize(800, 800));
    {
        DocumentWindow window(QStringLiteral("kind"));
        window.setGeometry(remembered);
        WindowPlace::save(window);
    }
    DocumentWindow window(QStringLiteral("kind"));
    WindowPlace::restore(window);
    QCOMPARE(window.geometry(), expected);
}

QTEST_MAIN(TestWindowPlace)
#include "tst_WindowPlace.moc"
