#include "work/Work.h"

#include "support/Rows.h"

#include <QSignalSpy>
#include <QTest>

#include <atomic>
#include <latch>
#include <optional>

using namespace Qt::StringLiterals;
using namespace tarnwick;

class TestWork : public QObject
{
    Q_OBJECT

private slots:
    void tellsInOrderAndItsEndLast();
    void tellsNothingOnceItIsGivenUp_data();
    void tellsNothingOnceItIsGivenUp();
    void tellsWhatATaskThatWasStoppedComesBackWith();
    void itsEndMayStartTheNext();
    void waitsForWhoeverOwnsWhatTheTaskUses();
};

void TestWork::tellsInOrderAndItsEndLast()
{
    Work work;
    QStringList told;
    work.start(
        [&told](const std::stop_token&, const Work::Report& report) {
            report(1, 4);
            report(2, 4); // too soon to be passed on
            report.deliver([&told] { told << u"part"_s; });
            return 7;
        },
        [&](int result) {
            told << QString::number(result);
            QVERIFY(!work.isRunning());
        },
        [&told](quint64 done, quint64 total) { told << u"%1 of %2"_s.arg(done).arg(total); });
    QVERIFY(work.isRunning() && told.isEmpty());
    QTRY_VERIFY(!work.isRunning());
    QCOMPARE(told.join(u' '), u"1 of 4 part 7"_s);
}

using TellsNothing = Rows<std::function<void(std::optional<Work>&)>>;

void TestWork::tellsNothingOnceItIsGivenUp_data()
{
    const TellsNothing row;
    row("on request", [](std::optional<Work>& work) { work->abandon(); });
    row("on request, waiting", [](std::optional<Work>& work) { work->abandonAndWait(); });
    row("by being destroyed", [](std::optional<Work>& work) { work.reset(); });
    row("for the next", [](std::optional<Work>& work) { work->start([] {}, [] {}); });
}

/// Neither while the task runs nor when it has returned and its end is on its way.
void TestWork::tellsNothingOnceItIsGivenUp()
{
    const auto [giveUp] = TellsNothing::fetch();
    for (const bool hasReturned : {false, true}) {
        std::optional<Work> work(std::in_place);
        std::latch delivered(1);
        const auto held = std::make_shared<int>(0); // by the task, as long as there is one
        bool isTold = false;
        work->start(
            [&delivered, &isTold, held, hasReturned](
                const std::stop_token& stop, const Work::Report& report) {
                report.deliver([&isTold] { isTold = true; });
                delivered.count_down();
                while (!hasReturned && !stop.stop_requested())
                    QThread::yieldCurrentThread();
            },
            [&isTold] { isTold = true; });
        delivered.wait();
        while (hasReturned && held.use_count() > 1)
            QThread::yieldCurrentThread();
        giveUp(work);
        QTRY_COMPARE(held.use_count(), 1L);
        QTRY_VERIFY(!work || !work->isRunning());
        QCoreApplication::processEvents();
        QVERIFY(!isTold);
    }
}

void TestWork::tellsWhatATaskThatWasStoppedComesBackWith()
{
    Work work;
    int result = 0;
    work.start(
        [](const std::stop_token& stop) {
            while (!stop.stop_requested())
                QThread::yieldCurrentThread();
            return 5;
        },
        [&result](int stopped) { result = stopped; });
    work.requestStop();
    QTRY_COMPARE(result, 5);
}

void TestWork::itsEndMayStartTheNext()
{
    Work work;
    int ends = 0;
    std::function<void()> start = [&] {
        work.start([] {},
            [&] {
                if (++ends < 3)
                    start();
            });
    };
    start();
    QTRY_COMPARE(ends, 3);
    QVERIFY(!work.isRunning());
}

void TestWork::waitsForWhoeverOwnsWhatTheTaskUses()
{
    std::atomic<bool> hasReturned = false;
    Work work;
    work.start(
        [&hasReturned](const std::stop_token& stop) {
            while (!stop.stop_requested())
                QThread::yieldCurrentThread();
            hasReturned = true;
        },
        [] {});
    work.abandonAndWait();
    QVERIFY(hasReturned);
}

QTEST_GUILESS_MAIN(TestWork)
#include "tst_Work.moc"
