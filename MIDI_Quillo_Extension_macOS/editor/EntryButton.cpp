// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/EntryButton.hpp"

#include "editor/Environment.hpp"
#include "editor/Fonts.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int entryPadding = 6;
constexpr float entryCorner = 4;
constexpr int hoverLift = 20;

}  // namespace

int EntryButton::preferredWidth() const {
    return textWidth(getButtonText(), style::captionText) + 2 * entryPadding;
}

int EntryButton::preferredHeight() const {
    return style::logRowHeight;
}

void EntryButton::paintButton(juce::Graphics& graphics, bool hover, bool down) {
    const auto palette = environment<PaletteKey>(*this);
    const auto alpha = isEnabled() ? 1.0F : style::disabledAlpha;
    const auto edge = getLocalBounds().toFloat().reduced(0.5F);
    const bool lit = isEnabled() && (hover || down);
    graphics.setColour(displayColour(style::lifted(style::chosen(palette), lit ? hoverLift : 0)));
    graphics.fillRoundedRectangle(edge, entryCorner);
    graphics.setColour(displayColour(palette.triggerInput).withMultipliedAlpha(alpha));
    graphics.drawRoundedRectangle(edge, entryCorner, 1);
    graphics.setColour(displayColour(palette.primaryText).withMultipliedAlpha(alpha));
    graphics.setFont(textFont(style::captionText));
    graphics.drawText(getButtonText(), getLocalBounds(), juce::Justification::centred, false);
    paintFocusRing(graphics, entryCorner);
}

}  // namespace quillo
