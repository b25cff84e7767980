#include "ViewHistory.h"

namespace tarnwick {

namespace {

constexpr qsizetype longestHistory = 200;

std::optional<PagePlace> step(
    QList<PagePlace>& from, QList<PagePlace>& to, const PagePlace& present)
{
    if (from.isEmpty())
        return std::nullopt;
    to.append(present);
    return from.takeLast();
}

} // namespace

void ViewHistory::recordJumpFrom(const PagePlace& place)
{
    theForward.clear();
    if (!theBack.isEmpty() && theBack.last() == place)
        return;
    theBack.append(place);
    if (theBack.size() > longestHistory)
        theBack.removeFirst();
}

std::optional<PagePlace> ViewHistory::goBack(const PagePlace& present)
{
    return step(theBack, theForward, present);
}

std::optional<PagePlace> ViewHistory::goForward(const PagePlace& present)
{
    return step(theForward, theBack, present);
}

void ViewHistory::clear()
{
    theBack.clear();
    theForward.clear();
}

} // namespace tarnwick
