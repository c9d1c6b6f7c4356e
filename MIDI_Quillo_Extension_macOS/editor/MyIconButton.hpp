// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/ActionButton.hpp"
#include "editor/Icons.hpp"

namespace quillo {

/// A button without a border that shows an icon in the primary colour. Its title is its tooltip as well.
class MyIconButton final : public ActionButton {
public:
    MyIconButton(const juce::String& title, IconName icon, std::function<void()> action);

    void setIcon(IconName icon);

    [[nodiscard]] int preferredWidth() const override;
    [[nodiscard]] int preferredHeight() const override;

private:
    void paintButton(juce::Graphics& graphics, bool hover, bool down) override;

    IconName icon_;
};

}  // namespace quillo
