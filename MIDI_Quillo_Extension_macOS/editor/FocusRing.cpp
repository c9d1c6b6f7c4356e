// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/FocusRing.hpp"

#include "editor/Style.hpp"

namespace quillo {

void drawFocusRing(juce::Graphics& graphics, juce::Rectangle<int> area, float corner, juce::Colour colour) {
    constexpr float border = 1;
    graphics.setColour(colour);
    graphics.drawRoundedRectangle(area.toFloat().reduced(border + style::focusRing / 2), corner - border,
                                  style::focusRing);
}

}  // namespace quillo
