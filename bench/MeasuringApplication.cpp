#include "MeasuringApplication.h"

#include <QElapsedTimer>

#include <algorithm>
#include <ctime>

namespace tarnwick {

namespace {

double threadMilliseconds()
{
    timespec time = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

} // namespace

void MeasuringApplication::start()
{
    theEvents.clear();
    isMeasuring = true;
}

bool MeasuringApplication::notify(QObject* receiver, QEvent* event)
{
    if (isWithin || !isMeasuring)
        return QApplication::notify(receiver, event);
    isWithin = true;
    Event measured{0, 0, event->type(), receiver->metaObject()->className(), thePhase};
    QElapsedTimer clock;
    clock.start();
    const double before = threadMilliseconds();
    const bool result = QApplication::notify(receiver, event);
    measured.processor = threadMilliseconds() - before;
    measured.wall = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    isWithin = false;
    theEvents.push_back(measured);
    return result;
}

std::vector<MeasuringApplication::Event> MeasuringApplication::longest(
    double Event::*measure, std::size_t most) const
{
    std::vector<Event> events = theEvents;
    const auto end = events.begin() + static_cast<std::ptrdiff_t>(std::min(most, events.size()));
    std::partial_sort(events.begin(), end, events.end(),
        [measure](const Event& one, const Event& other) { return one.*measure > other.*measure; });
    events.erase(end, events.end());
    return events;
}

} // namespace tarnwick
