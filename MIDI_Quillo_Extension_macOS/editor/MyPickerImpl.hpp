// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "editor/FieldView.hpp"

namespace quillo {

/// The body of a picker, whatever the type of its values: a field that opens a menu when it is clicked, and
/// by Space, Return, Up and Down while it has the keyboard focus and is in sight; out of sight they bring it
/// there. [main] only.
class MyPickerImpl : public FieldView {
public:
    explicit MyPickerImpl(juce::String label);

    /// Opens the menu. A disabled picker stays closed.
    void openMenu();

    [[nodiscard]] bool hasChevron() const override { return true; }

    void mouseUp(const juce::MouseEvent& event) override;
    bool keyPressed(const juce::KeyPress& key) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

protected:
    [[nodiscard]] virtual std::vector<juce::String> rowLabels() const = 0;
    [[nodiscard]] virtual std::optional<std::size_t> currentRow() const = 0;
    virtual void pickRow(std::size_t row) = 0;
};

}  // namespace quillo
