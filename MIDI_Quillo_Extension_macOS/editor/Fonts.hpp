// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

/// The typefaces that the editor is set in: Inter where it is installed, otherwise the sans serif typeface that
/// the machine has. Sizes are of the em square, in points. [main] only.
namespace quillo {

[[nodiscard]] juce::Font textFont(float size, bool bold = false);

/// For lines of numbers that stand under one another.
[[nodiscard]] juce::Font monospacedFont(float size);

/// How wide a line of text is, rounded up.
[[nodiscard]] int textWidth(const juce::String& text, float size, bool bold = false);

/// Draws a line in the graphics' colour, from the left and centred in height; what does not fit is cut, with an
/// ellipsis. Sharp signs, which Inter lacks, are taken from DejaVu.
void drawLine(juce::Graphics& graphics, const juce::String& text, juce::Rectangle<int> area, float size,
              juce::Colour colour);

/// Empty where text can be drawn. On a machine without a typeface nothing would be seen and nothing would fail:
/// then the text says what to install.
[[nodiscard]] juce::String requireTypefaces();

/// The same for a given list of typefaces.
[[nodiscard]] juce::String requireTypefaces(const juce::StringArray& installed);

}  // namespace quillo
