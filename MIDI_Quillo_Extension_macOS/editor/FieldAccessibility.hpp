// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>

#include "editor/FieldView.hpp"

namespace quillo {

/// Shows a field to assistive technology as a control of `role` whose value is the text that the field shows.
/// Without `take` the value is read only.
[[nodiscard]] std::unique_ptr<juce::AccessibilityHandler> fieldAccessibility(
    FieldView& field, juce::AccessibilityRole role, juce::AccessibilityActions actions,
    std::function<void(const juce::String&)> take);

}  // namespace quillo
