// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/ColoredField.hpp"
#include "editor/FieldPlan.hpp"
#include "editor/MyWrappingHStack.hpp"

namespace quillo {

/// A labelled row of fields that wraps: the trigger or the message of a rule card. Where the card is narrow the
/// label stands above the fields. [main] only.
class FieldSection : public juce::Component {
public:
    explicit FieldSection(const juce::String& label);

    /// Stands behind the label from now on; the keyboard reaches it before the fields.
    void setLabelButton(juce::Component& button, int size);

    /// Makes the fields anew.
    void setFields(const FieldPlans& plans);
    /// The values may have changed; the fields are the same.
    void refresh();

    [[nodiscard]] const std::vector<std::unique_ptr<ColoredField>>& fields() const { return fields_; }

    /// The height of a section with these fields.
    [[nodiscard]] static int heightFor(const FieldPlans& plans, int width);

    void resized() override;
    void paint(juce::Graphics& graphics) override;

private:
    [[nodiscard]] static bool isNarrow(int width);
    [[nodiscard]] static int stackWidth(int width);
    [[nodiscard]] juce::Rectangle<int> labelArea() const;

    juce::String label_;
    juce::Component* labelButton_ = nullptr;
    MyWrappingHStack stack_;
    std::vector<std::unique_ptr<ColoredField>> fields_;
};

}  // namespace quillo
