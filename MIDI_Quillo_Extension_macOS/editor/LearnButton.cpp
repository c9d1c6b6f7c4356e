// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/LearnButton.hpp"

#include <utility>

#include "editor/Environment.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr float line = 1;
constexpr float recordingDot = 5;

}  // namespace

LearnButton::LearnButton(std::function<void()> action)
    : ActionButton("Learn the trigger", std::move(action)) {
    setTooltip("Learn the trigger: play it, or move its controller");
}

void LearnButton::setLearning(bool learning) {
    learning_ = learning;
    repaint();
}

void LearnButton::paintButton(juce::Graphics& graphics, bool hover, bool down) {
    const auto palette = environment<PaletteKey>(*this);
    const bool lit = hover || down || hasKeyboardFocus(false);
    const auto quiet = lit ? palette.primaryText : palette.secondaryText;
    const auto area = getLocalBounds().toFloat().reduced(1);
    graphics.setColour(displayColour(learning_ ? palette.triggerInput : quiet));
    graphics.drawEllipse(area.reduced(line / 2), hasKeyboardFocus(false) ? style::focusRing : line);
    graphics.fillEllipse(area.withSizeKeepingCentre(recordingDot, recordingDot));
}

}  // namespace quillo
