// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/FieldAccessibility.hpp"

#include <utility>

namespace quillo {
namespace {

class ShownValue final : public juce::AccessibilityTextValueInterface {
public:
    ShownValue(FieldView& field, std::function<void(const juce::String&)> take)
        : field_(field), take_(std::move(take)) {}

    bool isReadOnly() const override { return !take_; }
    juce::String getCurrentValueAsString() const override { return field_.shownText(); }
    void setValueAsString(const juce::String& text) override { take_(text); }

private:
    FieldView& field_;
    std::function<void(const juce::String&)> take_;
};

}  // namespace

std::unique_ptr<juce::AccessibilityHandler> fieldAccessibility(
    FieldView& field, juce::AccessibilityRole role, juce::AccessibilityActions actions,
    std::function<void(const juce::String&)> take) {
    return std::make_unique<juce::AccessibilityHandler>(
        field, role, std::move(actions),
        juce::AccessibilityHandler::Interfaces(std::make_unique<ShownValue>(field, std::move(take))));
}

}  // namespace quillo
