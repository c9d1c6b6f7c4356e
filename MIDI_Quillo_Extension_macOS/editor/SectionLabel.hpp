// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace quillo {

/// The name of a section of a card, "Trigger" or "Message", with a button behind it where there is one.
/// [main] only.
class SectionLabel final : public juce::Component {
public:
    explicit SectionLabel(juce::String text);

    /// Stands behind the text from now on. It stays the caller's.
    void setButton(juce::Component& button, int size);

    void resized() override;
    void paint(juce::Graphics& graphics) override;

private:
    juce::String text_;
    juce::Component* button_ = nullptr;
};

}  // namespace quillo
