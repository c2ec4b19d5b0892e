#include "UI/RadialNavigation.hpp"

#include <cmath>

namespace trelvan {

namespace {

/// Less than this ahead is beside, in points: places of one row differ by rounding only.
constexpr double beside = 1;
/// How much a square point aside counts against one ahead: enough that on a ring of eight the opposite entry
/// is nearer than the neighbours that lie a little ahead and far aside.
constexpr double asideWeight = 9;

struct Distance {
    double ahead;
    double aside;
};

Distance distance(Point from, Point to, Arrow arrow) {
    const double right = to.x - from.x;
    const double down = to.y - from.y;
    switch (arrow) {
        case Arrow::left:
            return {-right, std::abs(down)};
        case Arrow::right:
            return {right, std::abs(down)};
        case Arrow::up:
            return {-down, std::abs(right)};
        case Arrow::down:
            return {down, std::abs(right)};
    }
    return {0, 0};
}

}  // namespace

std::optional<std::size_t> nextPlace(std::span<const Point> places, Point centre,
                                     std::optional<std::size_t> from, Arrow arrow) {
    const Point start = from ? places[*from] : centre;
    std::optional<std::size_t> best;
    double bestCost = 0;
    for (std::size_t index = 0; index < places.size(); ++index) {
        const auto [ahead, aside] = distance(start, places[index], arrow);
        if (ahead < beside) continue;
        const double cost = ahead * ahead + asideWeight * aside * aside;
        if (best && cost >= bestCost) continue;
        best = index;
        bestCost = cost;
    }
    return best;
}

}  // namespace trelvan
