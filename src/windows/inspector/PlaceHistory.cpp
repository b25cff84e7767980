#include "PlaceHistory.h"

#include <algorithm>

namespace tarnwick {

namespace {

constexpr std::size_t mostPlaces = 200;

bool isAlive(const PanePlace& place)
{
    return place.view != nullptr;
}

} // namespace

PanePlace PanePlace::of(PlainTextView* view)
{
    const TextRange selection = view->selection();
    const bool isCaretAtBegin = view->caret() == selection.begin;
    return {view, isCaretAtBegin ? selection.end : selection.begin, view->caret()};
}

PlaceHistory::PlaceHistory(QObject* document)
    : QObject(document)
{
}

PlaceHistory& PlaceHistory::of(QObject& document)
{
    auto* history = document.findChild<PlaceHistory*>(QString(), Qt::FindDirectChildrenOnly);
    return history ? *history : *new PlaceHistory(&document);
}

void PlaceHistory::leave(const PanePlace& from)
{
    theForward.clear();
    keep(theBack, from);
}

bool PlaceHistory::canGoBack() const
{
    return std::any_of(theBack.begin(), theBack.end(), isAlive);
}

bool PlaceHistory::canGoForward() const
{
    return std::any_of(theForward.begin(), theForward.end(), isAlive);
}

std::optional<PanePlace> PlaceHistory::back(const PanePlace& from)
{
    return step(from, theBack, theForward);
}

std::optional<PanePlace> PlaceHistory::forward(const PanePlace& from)
{
    return step(from, theForward, theBack);
}

void PlaceHistory::keep(Places& places, const PanePlace& place)
{
    if (!places.empty() && places.back().isSameAs(place))
        return;
    places.push_back(place);
    if (places.size() > mostPlaces)
        places.erase(places.begin());
}

/// Takes the last place of one side that is still there and is another one.
std::optional<PanePlace> PlaceHistory::step(const PanePlace& from, Places& source, Places& target)
{
    while (!source.empty()) {
        const PanePlace place = source.back();
        source.pop_back();
        if (!isAlive(place) || place.isSameAs(from))
            continue;
        keep(target, from);
        return place;
    }
    return std::nullopt;
}

} // namespace tarnwick
