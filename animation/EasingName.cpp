#include "animation/EasingName.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "animation/EasingCurve.h"

namespace orvalo {

std::string easingName(EnumEasing type) {
    static constexpr std::array<std::string_view, 4> ways{"In", "Out", "InOut", "OutIn"};
    static constexpr std::array<std::string_view, 10> families{
        "Quad", "Cubic", "Quart", "Quint", "Sine", "Expo", "Circ", "Elastic", "Back", "Bounce"};
    static_assert(easingCount == 1 + ways.size() * families.size());

    if (type == EnumEasing::EASING_easeNone) {
        return "easeNone";
    }
    const auto place = static_cast<std::size_t>(rawValue(type)) - 1;
    if (place >= ways.size() * families.size()) {
        return {};
    }
    std::string name("ease");
    name += ways.at(place % ways.size());
    name += families.at(place / ways.size());
    return name;
}

}  // namespace orvalo
