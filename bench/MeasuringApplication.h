#pragma once

#include <QApplication>

#include <vector>

namespace tarnwick {

/// An application that measures every event that is not within another one: how long it holds the
/// main thread by the clock, and in processor time, which other programs do not lengthen.
class MeasuringApplication : public QApplication
{
public:
    using QApplication::QApplication;

    struct Event
    {
        double wall = 0; ///< milliseconds
        double processor = 0; ///< milliseconds
        int type = 0;
        const char* receiver = "";
        const char* phase = "";
    };

    /// Measures from now on; what was measured before is forgotten.
    void start();
    /// Events from now on belong to this part of what is measured.
    void setPhase(const char* name) { thePhase = name; }
    const char* phase() const { return thePhase; }

    std::size_t count() const { return theEvents.size(); }
    /// The longest events in processor time, or by the clock. @param most of them.
    std::vector<Event> longest(double Event::*measure, std::size_t most) const;

    bool notify(QObject* receiver, QEvent* event) override;

private:
    bool isWithin = false;
    bool isMeasuring = false;
    const char* thePhase = "";
    std::vector<Event> theEvents;
};

} // namespace tarnwick
