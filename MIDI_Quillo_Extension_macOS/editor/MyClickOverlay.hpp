// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/Environment.hpp"

namespace quillo {

/// Counts the clicks in a row on its content and hands the count down to it as `MyClickOverlayClicks`, from
/// the moment the button goes down. The content stays the caller's and fills this view. [main] only.
class MyClickOverlay final : public juce::Component, public EnvironmentScope {
public:
    explicit MyClickOverlay(juce::Component& content);
    ~MyClickOverlay() override;

    [[nodiscard]] int clicks() const { return clicks_; }

    void resized() override;
    void mouseDown(const juce::MouseEvent& event) override;

private:
    juce::Component& content_;
    int clicks_ = 0;
};

}  // namespace quillo
