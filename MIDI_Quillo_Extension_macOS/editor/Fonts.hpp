// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

/// The typefaces that the editor is set in: Inter where it is installed, otherwise the sans serif typeface
/// that the machine has. Letters that it lacks, such as sharps and Japanese, come from another typeface of
/// the machine that has them. Sizes are of the em square, in points. [main] only.
namespace quillo {

[[nodiscard]] juce::Font textFont(float size, bool bold = false);

/// For lines of numbers that stand under one another.
[[nodiscard]] juce::Font monospacedFont(float size);

/// How wide a line of text is, rounded up.
[[nodiscard]] int textWidth(const juce::String& text, float size, bool bold = false);

/// Draws a line in the graphics' colour, from the left and centred in height; what does not fit is cut, with
/// an ellipsis.
void drawLine(juce::Graphics& graphics, const juce::String& text, juce::Rectangle<int> area, float size,
              juce::Colour colour);

/// The text in lines of at most this width (at least 1), to be measured or drawn.
[[nodiscard]] juce::TextLayout inLines(const juce::String& text, int width, float size,
                                       juce::Colour colour = {},
                                       juce::Justification justification = juce::Justification::left);

/// `area` moved up or down so that a line of `font`, centred in its height, stands on the baseline of a line
/// of `beside` that is centred in `area`.
[[nodiscard]] juce::Rectangle<float> onBaseline(juce::Rectangle<int> area, const juce::Font& font,
                                                const juce::Font& beside);

/// Empty where text can be drawn. On a machine without a typeface nothing would be seen and nothing would
/// fail: then the text says what to install.
[[nodiscard]] juce::String requireTypefaces();

/// The same for a given list of typefaces.
[[nodiscard]] juce::String requireTypefaces(const juce::StringArray& installed);

}  // namespace quillo
