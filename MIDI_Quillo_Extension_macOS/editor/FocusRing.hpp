// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace quillo {

/// Marks what has the keyboard focus. `area` is what is marked, with its own border: the ring lies inside of
/// that, so that it stands out from the ground and not from a border of its own colour. [main] only.
void drawFocusRing(juce::Graphics& graphics, juce::Rectangle<int> area, float corner, juce::Colour colour);

}  // namespace quillo
