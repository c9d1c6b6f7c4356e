// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace quillo {

/// How JUCE's own parts look inside the editor: scroll bars, tooltips and carets. The editor's outermost
/// view holds one and sets it for itself, never for the process, which belongs to the host application.
/// [main] only.
class EditorLookAndFeel final : public juce::LookAndFeel_V4 {
public:
    EditorLookAndFeel();

    void drawScrollbar(juce::Graphics& graphics, juce::ScrollBar& bar, int x, int y, int width, int height,
                       bool vertical, int thumbStart, int thumbSize, bool hover, bool down) override;
    int getMinimumScrollbarThumbSize(juce::ScrollBar& bar) override;
    bool areScrollbarButtonsVisible() override;
    juce::Rectangle<int> getTooltipBounds(const juce::String& text, juce::Point<int> pointer,
                                          juce::Rectangle<int> window) override;
    void drawTooltip(juce::Graphics& graphics, const juce::String& text, int width, int height) override;
    juce::Typeface::Ptr getTypefaceForFont(const juce::Font& font) override;
};

}  // namespace quillo
