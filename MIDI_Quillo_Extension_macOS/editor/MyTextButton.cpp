// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyTextButton.hpp"

#include <utility>

#include "editor/Environment.hpp"
#include "editor/Fonts.hpp"
#include "editor/Style.hpp"

namespace quillo {

MyTextButton::MyTextButton(const juce::String& label, std::function<void()> action)
    : ActionButton(label, std::move(action)) {
    setButtonText(label);
}

void MyTextButton::setAccented(bool accented) {
    accented_ = accented;
    repaint();
}

int MyTextButton::preferredWidth() const {
    return textWidth(getButtonText(), style::buttonText) + 2 * style::buttonPadding;
}

int MyTextButton::preferredHeight() const {
    return style::buttonHeight;
}

juce::Colour MyTextButton::textColour() const {
    return displayColour(accented_ ? environment<MyPrimaryColor>(*this)
                                   : environment<PaletteKey>(*this).primaryText);
}

juce::Colour MyTextButton::borderColour(bool hover) const {
    if (accented_) {
        return displayColour(hover ? environment<MyPrimaryColor>(*this)
                                   : environment<MySecondaryColor>(*this));
    }
    const auto palette = environment<PaletteKey>(*this);
    return displayColour(hover ? style::litEdge(palette) : style::edge(palette));
}

void MyTextButton::paintButton(juce::Graphics& graphics, bool hover, bool down) {
    const bool lit = isEnabled() && (hover || down);
    const auto alpha = isEnabled() ? 1.0F : style::disabledAlpha;
    const auto edge = getLocalBounds().toFloat().reduced(0.5F);
    if (lit) {
        graphics.setColour(
            displayColour(style::lifted(environment<MyBackground>(*this), style::buttonHoverLift)));
        graphics.fillRoundedRectangle(edge, style::buttonCorner);
    }
    graphics.setColour(borderColour(lit).withMultipliedAlpha(alpha));
    graphics.drawRoundedRectangle(edge, style::buttonCorner, 1);
    graphics.setColour(textColour().withMultipliedAlpha(alpha));
    graphics.setFont(textFont(style::buttonText));
    graphics.drawText(getButtonText(), getLocalBounds().reduced(style::buttonPadding / 2, 0),
                      juce::Justification::centred, true);
    paintFocusRing(graphics, style::buttonCorner);
}

}  // namespace quillo
