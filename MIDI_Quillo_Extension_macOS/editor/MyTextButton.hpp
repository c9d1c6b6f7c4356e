// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/ActionButton.hpp"

namespace quillo {

/// A button with a border and a word in it. Plain, it is drawn in the colours of text and borders; accented, in
/// the primary and the secondary colour around it. Under the pointer it lights up.
class MyTextButton final : public ActionButton {
public:
    MyTextButton(const juce::String& label, std::function<void()> action);

    void setAccented(bool accented);

    [[nodiscard]] int preferredWidth() const override;
    [[nodiscard]] int preferredHeight() const override;

private:
    void paintButton(juce::Graphics& graphics, bool hover, bool down) override;
    [[nodiscard]] juce::Colour textColour() const;
    [[nodiscard]] juce::Colour borderColour(bool hover) const;

    bool accented_ = false;
};

}  // namespace quillo
