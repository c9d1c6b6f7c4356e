// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/Environment.hpp"

namespace quillo {

juce::Colour displayColour(MyRGB colour) {
    return {colour.r, colour.g, colour.b};
}

MySizeCategory sizeCategory(int width) {
    constexpr int smallEnd = 400;
    constexpr int mediumEnd = 640;
    constexpr int largeEnd = 960;
    if (width < smallEnd) {
        return MySizeCategory::small;
    }
    if (width < mediumEnd) {
        return MySizeCategory::medium;
    }
    return width < largeEnd ? MySizeCategory::large : MySizeCategory::extraLarge;
}

}  // namespace quillo
