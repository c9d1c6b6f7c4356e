// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <set>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/ColoredField.hpp"
#include "editor/FieldPlan.hpp"
#include "editor/MyWrappingHStack.hpp"

namespace quillo {

/// The sizes of fields, in the order in which they stand.
using FieldSizes = std::vector<juce::Point<int>>;

[[nodiscard]] FieldSizes sizesOf(const FieldPlans& plans);

/// A row of fields that wraps: the trigger or the message of a rule card. [main] only.
class FieldSection : public juce::Component {
public:
    explicit FieldSection(const juce::String& title);

    /// Shows these fields with their values. A field whose caption is planned again stays the same view: it
    /// may be typed into. Where one goes that has the keyboard, what stands in its place then has it.
    void setFields(const FieldPlans& plans);

    /// Draws these fields, by their position, as found, and no others.
    void mark(const std::set<std::size_t>& found);

    using Fields = std::vector<std::unique_ptr<ColoredField>>;
    [[nodiscard]] const Fields& fields() const { return fields_; }

    /// The height of a section with these fields.
    [[nodiscard]] static int heightFor(const FieldSizes& fields, int width);
    /// The width of a section whose fields stand in a single row.
    [[nodiscard]] static int widthInARow(const FieldSizes& fields);

    void resized() override;

private:
    [[nodiscard]] static std::unique_ptr<ColoredField> fieldFor(const FieldPlan& plan, Fields& before);

    MyWrappingHStack stack_;
    std::set<std::size_t> found_;
    Fields fields_;
};

}  // namespace quillo
