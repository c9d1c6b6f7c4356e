// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "editor/ActionButton.hpp"
#include "editor/Palette.hpp"

namespace quillo {

/// A button with a border and a word in it. Plain, it is drawn in the colours of text and borders; accented,
/// in the primary and the secondary colour around it, or in colours of its own. Under the pointer it lights
/// up.
class MyTextButton final : public ActionButton {
public:
    using ActionButton::ActionButton;

    void setAccented(bool accented);
    void setColours(MyRGB word, MyRGB border);

    [[nodiscard]] int preferredWidth() const override;
    [[nodiscard]] int preferredHeight() const override;

private:
    void paintButton(juce::Graphics& graphics, bool hover, bool down) override;

    struct Colours {
        MyRGB word;
        MyRGB border;
    };

    [[nodiscard]] Colours colours(bool lit) const;

    bool accented_ = false;
    std::optional<Colours> ownColours_;
};

}  // namespace quillo
