#include "AppDelegate.h"

#include "dialogs/Alert.h"
#include "export/ExportJob.h"
#include "frame/CommandRouter.h"
#include "frame/DocumentController.h"
#include "frame/DocumentWindow.h"
#include "support/Panels.h"
#include "support/Rows.h"

#include <QAction>
#include <QApplication>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <atomic>
#include <cmath>
#include <limits>
#include <memory>

using namespace Qt::StringLiterals;
using namespace tarnwick;

class TestAppDelegate : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void firstLaunchStoresWhatItFound();
    void launchChecksWhenDue();
    void checkIsDue();
    void launchStoresBehindReadingTheFlags();
    void settingsOfTheWrongKindAreAbsent();
    void togglesMarkEveryWindowAndAreStoredAtQuit();
    void menuHoldsTheFixedTitles();
    void newWindowsHaveAFocus();
    void filesDropOntoAnyPartOfAWindow();
    void helpOpensAndKeepsAWindowEachTime();
    void closingTheLastWindowQuits();
    void quittingAsksEveryWindowFirst_data();
    void quittingAsksEveryWindowFirst();
    void exportsKeepTheProgramRunning_data();
    void exportsKeepTheProgramRunning();
};

namespace {

DocumentWindow* shownWindow(AppDelegate& delegate)
{
    DocumentWindow* window = delegate.makeWindow(u"Test Window"_s, nullptr, new QWidget);
    window->show();
    return window;
}

/// Writes until it may end or is cancelled.
class SlowExport : public ExportJob
{
public:
    SlowExport(const std::atomic<bool>& mayEnd, bool& isWhole)
        : ExportJob(u"Slow"_s)
    {
        showProgress(u"slow"_s);
        startWriting([&mayEnd, &isWhole](const std::stop_token& stop, const Work::Report&) {
            while (!mayEnd && !stop.stop_requested())
                QThread::msleep(1);
            isWhole = mayEnd;
        });
    }
};

} // namespace

void TestAppDelegate::init()
{
    QSettings().clear();
}

void TestAppDelegate::firstLaunchStoresWhatItFound()
{
    AppDelegate delegate;
    QVERIFY(delegate.showThumbnail()); // until launch
    delegate.setUpdateCheck([] {});
    const double before = PreferenceStore::currentTime();
    delegate.applicationDidFinishLaunching({});
    QVERIFY(
        !delegate.showThumbnail() && !delegate.showRawSource() && !delegate.showSummarySource());
    const QSettings settings;
    QCOMPARE(settings.value(u"noUpdateCheck"_s).toString(), u"false"_s);
    const double stored = settings.value(u"dateLastUpdateCheck"_s).toDouble();
    QVERIFY(stored >= before && stored <= PreferenceStore::currentTime());
    QVERIFY(!settings.contains(u"showThumbnail"_s));
}

void TestAppDelegate::launchChecksWhenDue()
{
    for (const auto& [isRefused, secondsSinceLast] :
        {std::pair(false, 7200.0), {false, 1800.0}, {true, 7200.0}}) {
        const double last = PreferenceStore::currentTime() - secondsSinceLast;
        PreferenceStore::storeNoUpdateCheck(isRefused);
        PreferenceStore::storeUpdateInterval(3600.0);
        PreferenceStore::storeLastUpdateCheck(last);
        AppDelegate delegate;
        int checks = 0;
        delegate.setUpdateCheck([&checks] { ++checks; });
        delegate.applicationDidFinishLaunching({});
        QCOMPARE(checks, !isRefused && secondsSinceLast > 3600.0 ? 1 : 0);
        const UpdatePreferences after = PreferenceStore::readUpdatePreferences();
        QCOMPARE(after.dateLastUpdateCheck > last + 1.0, checks == 1);
        QCOMPARE(after.noUpdateCheck, isRefused);
        QCOMPARE(after.updateCheckInt, 3600.0);
    }
}

void TestAppDelegate::checkIsDue()
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

void TestAppDelegate::launchStoresBehindReadingTheFlags()
{
    PreferenceStore::storeFlags({false, true, false});
    AppDelegate delegate;
    const DocumentWindow* window = shownWindow(delegate);
    bool wasStored = true;
    connect(window->commandAction(u"toggleRawSource"_s), &QAction::toggled, window,
        [&wasStored] { wasStored = QSettings().contains(u"updateCheckInt"_s); });
    delegate.applicationDidFinishLaunching({});
    QVERIFY(!wasStored);
    QVERIFY(QSettings().contains(u"updateCheckInt"_s));
}

void TestAppDelegate::settingsOfTheWrongKindAreAbsent()
{
    const auto write = [](const char* key, const char* value) {
        QSettings().setValue(QString::fromLatin1(key), QString::fromLatin1(value));
    };
    for (const char* value : {"nan", "inf", "-inf", "1e999", "banana", ""}) {
        write("dateLastUpdateCheck", value);
        write("updateCheckInt", value);
        write("noUpdateCheck", value);
        AppDelegate delegate;
        int checks = 0;
        delegate.setUpdateCheck([&checks] { ++checks; });
        delegate.applicationDidFinishLaunching({});
        QVERIFY2(checks == 1, value);
        const UpdatePreferences after = PreferenceStore::readUpdatePreferences();
        QVERIFY(after.dateLastUpdateCheck > 0 && !after.noUpdateCheck);
        QCOMPARE(QSettings().value(u"updateCheckInt"_s).toDouble(), 43200.0);
    }
    for (const char* value : {"banana", "no", "0", "false", "FALSE", "nan", "2", ""}) {
        write("showRawSource", value);
        QVERIFY2(!PreferenceStore::readFlags().showRawSource, value);
    }
    for (const char* value : {"true", "True", "1"}) {
        write("showRawSource", value);
        QVERIFY2(PreferenceStore::readFlags().showRawSource, value);
    }
}

void TestAppDelegate::togglesMarkEveryWindowAndAreStoredAtQuit()
{
    PreferenceStore::storeFlags({false, true, false});
    AppDelegate delegate;
    delegate.applicationDidFinishLaunching({});
    const DocumentWindow* one = shownWindow(delegate);
    const DocumentWindow* other = shownWindow(delegate);
    const QString command = u"toggleThumbnails"_s;
    QVERIFY(one->commandAction(u"toggleRawSource"_s)->isChecked());
    QVERIFY(!one->commandAction(command)->isChecked());
    for (const bool expected : {true, false, true}) {
        one->commandAction(command)->trigger();
        QCOMPARE(delegate.showThumbnail(), expected);
        QCOMPARE(one->commandAction(command)->isChecked(), expected);
        QCOMPARE(other->commandAction(command)->isChecked(), expected);
    }
    QCOMPARE(one->commandAction(u"updateState"_s)->text(), u"Update not checked"_s);
    delegate.showUpdateChecked();
    const DocumentWindow* later = shownWindow(delegate);
    for (const DocumentWindow* window : {one, other, later}) {
        const QAction* item = window->commandAction(u"updateState"_s);
        QCOMPARE(item->text(), u"Checked for update"_s);
        QVERIFY(item->isChecked());
    }
    delegate.toggleRawSource(nullptr);
    QVERIFY(!PreferenceStore::readFlags().showThumbnail); // not before the end
    delegate.applicationWillTerminate();
    const PreferenceStore::Flags stored = PreferenceStore::readFlags();
    QVERIFY(stored.showThumbnail && !stored.showRawSource && !stored.showSummarySource);
}

void TestAppDelegate::menuHoldsTheFixedTitles()
{
    AppDelegate delegate;
    const DocumentWindow* window = shownWindow(delegate);
    const QMenu* first = window->menuBar()->actions().at(0)->menu();
    QString titles = first->title();
    for (const QAction* action : first->actions().mid(0, 3))
        titles += u'|' + action->text();
    titles += u'|' + window->commandAction(u"exportPDFversions"_s)->text();
    QCOMPARE(titles.remove(u'&'),
        u"Tarnwick|Show Thumbnails|Show Raw Source|Show Summary Source|Export PDF Versions…"_s);
}

void TestAppDelegate::newWindowsHaveAFocus()
{
    auto* content = new QWidget;
    new QLabel(u"Name:"_s, content);
    auto* off = new QLineEdit(content);
    off->setEnabled(false);
    auto* field = new QLineEdit(content);
    AppDelegate delegate;
    DocumentWindow* window = delegate.makeWindow(u"Test Window"_s, nullptr, content);
    window->show();
    QCOMPARE(window->focusWidget(), field);
    QTRY_VERIFY(window->commandAction(u"selectAll"_s)->isEnabled());
}

void TestAppDelegate::filesDropOntoAnyPartOfAWindow()
{
    auto* field = new QLineEdit; // takes drops of its own
    AppDelegate delegate;
    DocumentWindow* window = delegate.makeWindow(u"Test Window"_s, nullptr, field);
    window->show();
    const QSignalSpy dropped(window, &DocumentWindow::filesDropped);
    QMimeData data;
    data.setText(u"words"_s);
    const auto drop = [&data, field] {
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(field, &enter);
        QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(field, &event);
    };
    drop();
    QCOMPARE(field->text(), u"words"_s);
    data.setUrls({QUrl(u"https://a.example/x.pdf"_s), QUrl(u"file:///nonexistent/a%20b.pdf"_s)});
    drop();
    QCOMPARE(field->text(), u"words"_s);
    QCOMPARE(dropped.size(), 1);
    QCOMPARE(dropped.at(0).at(0).toStringList(), {u"/nonexistent/a b.pdf"_s});
    QVERIFY(delegate.controller()->isOpening());
}

void TestAppDelegate::helpOpensAndKeepsAWindowEachTime()
{
    AppDelegate delegate;
    delegate.plainWindowRegistry().add(WindowIdentifiers::help, [&delegate](void*) {
        return delegate.makeWindow(WindowIdentifiers::help, nullptr, new QWidget);
    });
    delegate.openHelp();
    delegate.openHelp();
    QCOMPARE(delegate.controller()->windows().size(), 2);
    delegate.myHelpWindow().at(0)->close();
    QTRY_COMPARE(delegate.controller()->windows().size(), 1);
    QCOMPARE(delegate.myHelpWindow().size(), 2);
}

void TestAppDelegate::closingTheLastWindowQuits()
{
    QApplication::setQuitOnLastWindowClosed(false); // as main() does
    AppDelegate delegate;
    delegate.applicationDidFinishLaunching({});
    QSignalSpy ended(qApp, &QCoreApplication::aboutToQuit);
    DocumentWindow* window = delegate.controller()->windows().at(0);
    QMetaObject::invokeMethod(window, &QWidget::close, Qt::QueuedConnection);
    QCOMPARE(QCoreApplication::exec(), 0);
    QCOMPARE(ended.size(), 1);
}

using QuittingAsks = Rows<QString, int>;

void TestAppDelegate::quittingAsksEveryWindowFirst_data()
{
    const QuittingAsks row;
    row("the first is kept", "keep", 4);
    row("the second is kept", "stop keep", 4);
    row("none is kept", "stop stop", 0);
    row("a second attempt asks anew", "keep stop stop", 0);
}

/// Nothing is closed or given up before the user has agreed to all that ends with it.
void TestAppDelegate::quittingAsksEveryWindowFirst()
{
    const auto [answers, left] = QuittingAsks::fetch();
    AppDelegate delegate;
    QList<QPointer<QObject>> works;
    for (const bool isAtWork : {false, true, false, true}) {
        DocumentWindow* const window = shownWindow(delegate);
        if (isAtWork)
            window->askBeforeClosing(
                works.emplace_back(new QObject(&delegate)), {u"?"_s, {}, u"stop"_s});
    }
    const auto shownCount = [&] { return delegate.controller()->windows().size(); };
    delegate.controller()->openFiles({u"/nonexistent/a.pdf"_s});
    for (const QString& answer : answers.split(u' ')) {
        if (!shown<Alert>())
            delegate.quit();
        QCOMPARE(allShown<Alert>().size(), 1);
        QCOMPARE(shownCount(), 4);
        QVERIFY(delegate.controller()->isOpening());
        const QPointer<Alert> asked = shown<Alert>();
        for (QAbstractButton* const button : asked->buttons()) {
            if (button->text().contains(answer, Qt::CaseInsensitive))
                button->click();
        }
        QVERIFY(!asked || !asked->isVisible());
    }
    QCOMPARE(shownCount(), left);
    QCOMPARE(delegate.controller()->isOpening(), left > 0);
    QCOMPARE(works.contains(nullptr), left == 0); // closing destroys what it ends
}

void TestAppDelegate::exportsKeepTheProgramRunning_data()
{
    QTest::addColumn<bool>("isQuit");
    QTest::newRow("closing the last window") << false;
    QTest::newRow("quitting, which closes it") << true;
}

/// An export's end does not end the program, and what closes the last window does not end the
/// export.
void TestAppDelegate::exportsKeepTheProgramRunning()
{
    QFETCH(const bool, isQuit);
    QApplication::setQuitOnLastWindowClosed(false);
    AppDelegate delegate;
    delegate.applicationDidFinishLaunching({});
    const std::atomic<bool> yes = true;
    std::atomic<bool> mayEnd = false;
    bool firstIsWhole = false;
    bool secondIsWhole = false;
    bool isRunningBehindExport = false;
    // Each step comes behind what would end the program.
    const auto* const first = new SlowExport(yes, firstIsWhole);
    const auto goOn = [&] {
        isRunningBehindExport = true;
        new SlowExport(mayEnd, secondIsWhole);
        if (isQuit)
            delegate.quit();
        else
            delegate.controller()->windows().at(0)->close();
    };
    connect(first, &QObject::destroyed, &delegate, goOn, Qt::QueuedConnection);
    connect(
        delegate.controller(), &DocumentController::lastWindowClosed, &delegate,
        [&mayEnd] { mayEnd = true; }, Qt::QueuedConnection);
    QCOMPARE(QCoreApplication::exec(), 0);
    QVERIFY(isRunningBehindExport && firstIsWhole && secondIsWhole);
}

QTEST_MAIN(TestAppDelegate)
#include "tst_AppDelegate.moc"
