// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/EditorLookAndFeel.hpp"

#include <algorithm>

#include "editor/Environment.hpp"
#include "editor/Fonts.hpp"
#include "editor/Style.hpp"

namespace quillo {
namespace {

constexpr int leastThumb = 24;
constexpr int tooltipPadding = 6;
constexpr int pointerHeight = 18;

juce::TextLayout tooltipLayout(const juce::String& text, int width) {
    return inLines(text, width, style::valueText, displayColour(Palette().primaryText));
}

}  // namespace

EditorLookAndFeel::EditorLookAndFeel() {
    const auto text = displayColour(Palette().primaryText);
    setColour(juce::TextEditor::highlightColourId, text.withAlpha(0.3F));
    setColour(juce::TextEditor::highlightedTextColourId, text);
    setColour(juce::ScrollBar::thumbColourId, displayColour(style::edge(Palette())));
}

void EditorLookAndFeel::drawScrollbar(juce::Graphics& graphics, juce::ScrollBar& bar, int x, int y, int width,
                                      int height, bool vertical, int thumbStart, int thumbSize, bool hover,
                                      bool down) {
    const auto thumb = vertical ? juce::Rectangle<int>(x, thumbStart, width, thumbSize)
                                : juce::Rectangle<int>(thumbStart, y, thumbSize, height);
    const auto colour = bar.findColour(juce::ScrollBar::thumbColourId);
    graphics.setColour(hover || down ? colour.brighter(0.4F) : colour);
    graphics.fillRoundedRectangle(thumb.toFloat(), static_cast<float>(std::min(width, height)) / 2);
}

int EditorLookAndFeel::getMinimumScrollbarThumbSize(juce::ScrollBar& /*bar*/) {
    return leastThumb;
}

bool EditorLookAndFeel::areScrollbarButtonsVisible() {
    return false;
}

juce::Rectangle<int> EditorLookAndFeel::getTooltipBounds(const juce::String& text, juce::Point<int> pointer,
                                                         juce::Rectangle<int> window) {
    const auto layout = tooltipLayout(text, window.getWidth() - 4 * tooltipPadding);
    const auto width = static_cast<int>(layout.getWidth()) + 2 * tooltipPadding + 2;
    const auto height = static_cast<int>(layout.getHeight()) + 2 * tooltipPadding;
    return juce::Rectangle<int>(pointer.x, pointer.y + pointerHeight, width, height)
        .constrainedWithin(window);
}

void EditorLookAndFeel::drawTooltip(juce::Graphics& graphics, const juce::String& text, int width,
                                    int height) {
    const auto area = juce::Rectangle<int>(width, height).toFloat();
    graphics.setColour(displayColour(style::lifted(Palette().background, style::menuLift)));
    graphics.fillRect(area);
    graphics.setColour(displayColour(style::edge(Palette())));
    graphics.drawRect(area, 1);
    tooltipLayout(text, width - 2 * tooltipPadding + 2).draw(graphics, area.reduced(tooltipPadding));
}

juce::Typeface::Ptr EditorLookAndFeel::getTypefaceForFont(const juce::Font& font) {
    return font.getTypefaceName() == juce::Font::getDefaultSansSerifFontName()
               ? textFont(font.getHeight(), font.isBold()).getTypefacePtr()
               : juce::LookAndFeel_V4::getTypefaceForFont(font);
}

}  // namespace quillo
