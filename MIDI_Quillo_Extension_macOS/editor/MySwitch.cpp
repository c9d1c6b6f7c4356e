// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MySwitch.hpp"

#include <utility>

#include "editor/Environment.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr float trackInset = 2;
constexpr float knobInset = 2;

}  // namespace

MySwitch::MySwitch(const juce::String& title, std::function<void(bool)> onToggle)
    : ActionButton(title, [this, onToggle = std::move(onToggle)] { onToggle(!isOn()); }) {
    setToggleable(true);
}

void MySwitch::paintButton(juce::Graphics& graphics, bool hover, bool down) {
    const auto palette = environment<PaletteKey>(*this);
    const auto track = getLocalBounds().toFloat().reduced(1, trackInset);
    const auto round = track.getHeight() / 2;
    graphics.setColour(displayColour(isOn() ? palette.delayInputSecondaryColor : palette.borders));
    graphics.fillRoundedRectangle(track, round);
    if (hover || down) {
        graphics.setColour(displayColour(style::litEdge(palette)));
        graphics.drawRoundedRectangle(track.reduced(0.5F), round, 1);
    }
    const auto knob = track.reduced(knobInset);
    const auto size = knob.getHeight();
    graphics.setColour(displayColour(isOn() ? palette.background : palette.secondaryText));
    graphics.fillEllipse(
        (isOn() ? knob.withLeft(knob.getRight() - size) : knob.withRight(knob.getX() + size)));
    paintFocusRing(graphics, static_cast<float>(getHeight()) / 2);
}

}  // namespace quillo
