// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyIconButton.hpp"

#include <utility>

#include "editor/Environment.hpp"
#include "editor/Style.hpp"

namespace quillo {

MyIconButton::MyIconButton(const juce::String& title, IconName icon, std::function<void()> action, int size)
    : ActionButton(title, std::move(action)), icon_(icon), size_(size) {
    setTooltip(title);
}

void MyIconButton::setIcon(IconName icon) {
    if (icon_ != icon) {
        icon_ = icon;
        repaint();
    }
}

void MyIconButton::paintButton(juce::Graphics& graphics, bool hover, bool down) {
    const auto area = getLocalBounds().toFloat();
    if (isEnabled() && (hover || down)) {
        graphics.setColour(
            displayColour(style::lifted(environment<MyBackground>(*this), style::buttonHoverLift)));
        graphics.fillRoundedRectangle(area, style::buttonCorner);
    }
    const auto colour = displayColour(environment<MyPrimaryColor>(*this));
    drawIcon(graphics, icon_, area.withSizeKeepingCentre(style::iconSize, style::iconSize),
             isEnabled() ? colour : colour.withMultipliedAlpha(style::disabledAlpha));
    paintFocusRing(graphics, style::buttonCorner);
}

}  // namespace quillo
