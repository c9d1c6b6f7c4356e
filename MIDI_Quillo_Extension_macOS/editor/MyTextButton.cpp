// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyTextButton.hpp"

#include "editor/Environment.hpp"
#include "editor/Fonts.hpp"
#include "editor/Style.hpp"

namespace quillo {

void MyTextButton::setAccented(bool accented) {
    accented_ = accented;
    repaint();
}

void MyTextButton::setColours(MyRGB word, MyRGB border) {
    ownColours_ = Colours{word, border};
    repaint();
}

int MyTextButton::preferredWidth() const {
    return textWidth(getButtonText(), style::buttonText) + 2 * style::buttonPadding;
}

int MyTextButton::preferredHeight() const {
    return style::buttonHeight;
}

/// Lit, an accented button has a border in the colour of its text.
MyTextButton::Colours MyTextButton::colours(bool lit) const {
    const auto palette = environment<PaletteKey>(*this);
    if (!accented_ && !ownColours_) {
        return {palette.primaryText, lit ? style::litEdge(palette) : style::edge(palette)};
    }
    const auto own = ownColours_.value_or(
        Colours{environment<MyPrimaryColor>(*this), environment<MySecondaryColor>(*this)});
    return {own.word, lit ? own.word : own.border};
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
    const auto [word, border] = colours(lit);
    graphics.setColour(displayColour(border).withMultipliedAlpha(alpha));
    graphics.drawRoundedRectangle(edge, style::buttonCorner, 1);
    graphics.setColour(displayColour(word).withMultipliedAlpha(alpha));
    graphics.setFont(textFont(style::buttonText));
    graphics.drawText(getButtonText(), getLocalBounds().reduced(style::buttonPadding / 2, 0),
                      juce::Justification::centred, true);
    paintFocusRing(graphics, style::buttonCorner);
}

}  // namespace quillo
