// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/ActionButton.hpp"

namespace quillo {

/// A button that fits into a row of a log, over what is written there. [main] only.
class EntryButton final : public ActionButton {
public:
    using ActionButton::ActionButton;

    [[nodiscard]] int preferredWidth() const override;
    [[nodiscard]] int preferredHeight() const override;

private:
    void paintButton(juce::Graphics& graphics, bool hover, bool down) override;
};

}  // namespace quillo
