// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include <juce_gui_basics/juce_gui_basics.h>

namespace quillo {

/// A typeface with every letter that the machine has: those that it lacks come from the typefaces that
/// fontconfig offers in its place, in the user's language and drawn at the same size. JUCE itself would draw
/// a box for them. A font that is made of it has it in all that JUCE draws: lines, text fields, tooltips.
///
///     const juce::Font font(new CompleteTypeface(juce::Font("Inter", "Regular", 12)));
///
/// Typefaces of pictures, as coloured emoji are, cannot be drawn and are not taken. [main] only.
class CompleteTypeface final : public juce::CustomTypeface {
public:
    explicit CompleteTypeface(const juce::Font& font);
    ~CompleteTypeface() override;

protected:
    bool loadGlyphIfPossible(juce::juce_wchar character) override;

private:
    class Substitutes;

    juce::Font font_;
    std::unique_ptr<Substitutes> substitutes_;
};

}  // namespace quillo
