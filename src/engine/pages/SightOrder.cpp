#include "SightOrder.h"

#include <algorithm>
#include <map>
#include <utility>

namespace tarnwick {

namespace {

/// Units drawn side by side in one direction, kept from left to right.
struct Stretch
{
    std::vector<LineUnit> units;
    double left = 0;
    double right = 0;

    double middle() const { return (left + right) / 2; }
};

enum class Step
{
    isToTheRight,
    isToTheLeft,
    isJump,
};

/// Glyphs stand side by side where they leave no gap and do not lie over each other.
Step stepBetween(const LineUnit& one, const LineUnit& next, double size)
{
    const bool isRight = next.middle() > one.middle();
    const double gap = isRight ? next.left - one.right : one.left - next.right;
    const double narrower = std::min(one.right - one.left, next.right - next.left);
    if (gap > 0.1 * size || -gap > 0.5 * narrower + 0.1 * size)
        return Step::isJump;
    return isRight ? Step::isToTheRight : Step::isToTheLeft;
}

std::vector<Stretch> stretches(const std::vector<LineUnit>& units, double size)
{
    std::vector<Stretch> result;
    Step direction = Step::isJump; // of the stretch; a jump while it has one unit
    for (const LineUnit& unit : units) {
        const Step step
            = result.empty() ? Step::isJump : stepBetween(result.back().units.back(), unit, size);
        const bool isFirstStep = direction == Step::isJump;
        if (step == Step::isJump || (!isFirstStep && step != direction)) {
            result.push_back({{unit}, unit.left, unit.right});
            direction = Step::isJump;
            continue;
        }
        direction = step;
        Stretch& stretch = result.back();
        stretch.units.push_back(unit);
        stretch.left = std::min(stretch.left, unit.left);
        stretch.right = std::max(stretch.right, unit.right);
    }
    for (Stretch& stretch : result) {
        if (stretch.units.front().middle() > stretch.units.back().middle())
            std::reverse(stretch.units.begin(), stretch.units.end());
    }
    return result;
}

/// What one line holds so far.
class Layer
{
public:
    /// Whether most of a stretch lies over another, or the other way round. Single glyphs tell
    /// nothing: some scripts pile them up.
    bool isCoveredAt(const Stretch& stretch) const
    {
        if (stretch.units.size() < 2)
            return false;
        const auto covered = [&](const std::pair<const double, double>& other) {
            const double narrower
                = std::min(stretch.right - stretch.left, other.second - other.first);
            return std::min(stretch.right, other.second) - std::max(stretch.left, other.first)
                > 0.6 * narrower;
        };
        const auto next = theExtents.upper_bound(stretch.left);
        return (next != theExtents.end() && covered(*next))
            || (next != theExtents.begin() && covered(*std::prev(next)));
    }

    void add(Stretch stretch)
    {
        if (stretch.units.size() >= 2)
            theExtents.emplace(stretch.left, stretch.right);
        theStretches.push_back(std::move(stretch));
    }

    std::vector<LineUnit> units()
    {
        std::stable_sort(theStretches.begin(), theStretches.end(),
            [](const Stretch& one, const Stretch& other) { return one.middle() < other.middle(); });
        std::vector<LineUnit> result;
        for (const Stretch& stretch : theStretches)
            result.insert(result.end(), stretch.units.begin(), stretch.units.end());
        return result;
    }

private:
    std::vector<Stretch> theStretches;
    std::map<double, double> theExtents; ///< left and right ends of stretches
};

} // namespace

std::vector<std::vector<LineUnit>> sightOrder(const std::vector<LineUnit>& units, double size)
{
    std::vector<std::vector<LineUnit>> lines;
    Layer layer;
    for (Stretch& stretch : stretches(units, size)) {
        if (layer.isCoveredAt(stretch)) {
            lines.push_back(layer.units());
            layer = {};
        }
        layer.add(std::move(stretch));
    }
    if (!units.empty())
        lines.push_back(layer.units());
    return lines;
}

} // namespace tarnwick
