// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/ActionButton.hpp"
#include "editor/Icons.hpp"
#include "editor/Style.hpp"

namespace quillo {

/// A button without a border that shows an icon in the primary colour. Its title is its tooltip as well.
class MyIconButton final : public ActionButton {
public:
    /// As wide and as high as `size`.
    MyIconButton(const juce::String& title, IconName icon, std::function<void()> action,
                 int size = style::iconButtonSize);

    void setIcon(IconName icon);

    [[nodiscard]] int preferredWidth() const override { return size_; }
    [[nodiscard]] int preferredHeight() const override { return size_; }

private:
    void paintButton(juce::Graphics& graphics, bool hover, bool down) override;

    IconName icon_;
    int size_;
};

}  // namespace quillo
