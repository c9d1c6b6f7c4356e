// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/ActionButton.hpp"

namespace quillo {

/// A small switch that is on or off: its knob stands right or left. [main] only.
class MySwitch final : public ActionButton {
public:
    static constexpr int width = 24;
    static constexpr int height = 16;

    /// `onToggle` gets the new state.
    MySwitch(const juce::String& title, std::function<void(bool isOn)> onToggle);

    /// Shows a state; nothing is called.
    void show(bool isOn) { setToggleState(isOn, juce::dontSendNotification); }
    [[nodiscard]] bool isOn() const { return getToggleState(); }

    [[nodiscard]] int preferredWidth() const override { return width; }
    [[nodiscard]] int preferredHeight() const override { return height; }

private:
    void paintButton(juce::Graphics& graphics, bool hover, bool down) override;
};

}  // namespace quillo
