// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/ActionButton.hpp"

namespace quillo {

/// A box with a tick in it or without, and what that means beside it, in as many lines as it needs. [main]
/// only.
class MyCheckBox final : public ActionButton {
public:
    /// `onToggle` gets the new state.
    MyCheckBox(const juce::String& label, bool ticked, std::function<void(bool ticked)> onToggle);

    [[nodiscard]] bool isTicked() const { return getToggleState(); }

    [[nodiscard]] int preferredWidth() const override;
    [[nodiscard]] int preferredHeight() const override;
    [[nodiscard]] int heightFor(int width) const;

private:
    void paintButton(juce::Graphics& graphics, bool hover, bool down) override;

    std::function<void(bool)> onToggle_;
};

}  // namespace quillo
