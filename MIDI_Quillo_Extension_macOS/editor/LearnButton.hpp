// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/ActionButton.hpp"

namespace quillo {

/// A round button with a dot, as recorders have one: learns a trigger. In colour while it does. [main] only.
class LearnButton final : public ActionButton {
public:
    static constexpr int size = 16;

    explicit LearnButton(std::function<void()> action);

    void setLearning(bool learning);
    [[nodiscard]] bool isLearning() const { return learning_; }

    [[nodiscard]] int preferredWidth() const override { return size; }
    [[nodiscard]] int preferredHeight() const override { return size; }

private:
    void paintButton(juce::Graphics& graphics, bool hover, bool down) override;

    bool learning_ = false;
};

}  // namespace quillo
