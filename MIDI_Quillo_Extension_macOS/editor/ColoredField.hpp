// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <memory>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Environment.hpp"
#include "editor/FieldView.hpp"
#include "editor/PreferredSize.hpp"

namespace quillo {

/// The main colour of a kind of value and its darker companion.
struct ColorPair {
    MyRGB primary;
    MyRGB secondary;

    bool operator==(const ColorPair&) const = default;
};

/// Draws the field in it with a pair of colours. [main] only.
class ColoredField final : public juce::Component, public EnvironmentScope, public PreferredSize {
public:
    ColoredField(std::unique_ptr<FieldView> field, const ColorPair& colors);

    /// What the field asks for even if its value is short.
    void setLeastWidth(int width) { leastWidth_ = width; }

    [[nodiscard]] FieldView& field() const { return *field_; }

    [[nodiscard]] int preferredWidth() const override {
        return std::max(field_->preferredWidth(), leastWidth_);
    }
    [[nodiscard]] int preferredHeight() const override { return field_->preferredHeight(); }

    void resized() override;

private:
    std::unique_ptr<FieldView> field_;
    int leastWidth_ = 0;
};

}  // namespace quillo
