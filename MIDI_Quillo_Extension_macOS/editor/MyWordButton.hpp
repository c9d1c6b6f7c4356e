// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/ActionButton.hpp"
#include "editor/Palette.hpp"

namespace quillo {

/// A button that is nothing but its word, in a colour of its own; under the pointer it is underlined. [main]
/// only.
class MyWordButton final : public ActionButton {
public:
    using ActionButton::ActionButton;

    void setColour(MyRGB colour);
    using ActionButton::setColour;

    [[nodiscard]] int preferredWidth() const override;
    [[nodiscard]] int preferredHeight() const override;

private:
    void paintButton(juce::Graphics& graphics, bool hover, bool down) override;

    MyRGB colour_ = Palette().secondaryText;
};

}  // namespace quillo
