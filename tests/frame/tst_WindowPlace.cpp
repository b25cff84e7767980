#include "WindowPlace.h"
#include "frame/DocumentWindow.h"

#include <QScreen>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

class TestWindowPlace : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void comesBackIntoTheScreen();

private:
    QTemporaryDir theFolder;
};

void TestWindowPlace::initTestCase()
{
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, theFolder.path());
    QCoreApplication::setOrganizationName(u"Test"_s);
}

void TestWindowPlace::comesBackIntoTheScreen()
{
    const auto restored = [](const QRect& remembered) {
        DocumentWindow window(u"kind"_s);
        window.setGeometry(remembered);
        WindowPlace::save(window);
        DocumentWindow later(u"kind"_s);
        WindowPlace::restore(later);
        return later.geometry();
    };
    // A frame is allowed 40 above and 8 at the other sides.
    QCOMPARE(QGuiApplication::primaryScreen()->availableSize(), QSize(800, 800));
    QCOMPARE(restored({100, 50, 300, 200}), QRect(100, 50, 300, 200));
    QCOMPARE(restored({0, 20, 800, 780}), QRect(0, 20, 800, 780)); // as a maximized one may
    QCOMPARE(restored({700, 750, 300, 200}), QRect(492, 592, 300, 200));
    QCOMPARE(restored({-60, 50, 300, 200}), QRect(8, 50, 300, 200));
    QCOMPARE(restored({40, 50, 2000, 300}), QRect(8, 50, 784, 300));
    QCOMPARE(restored({3000, 100, 300, 200}), QRect(500, 100, 300, 200)); // a screen that is gone
}

QTEST_MAIN(TestWindowPlace)
#include "tst_WindowPlace.moc"
