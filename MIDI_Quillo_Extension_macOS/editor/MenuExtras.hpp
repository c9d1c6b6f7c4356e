// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <optional>

#include <juce_gui_basics/juce_gui_basics.h>

namespace quillo {

class FieldView;

/// A row that stands for what is typed into a menu, or into a field, and what picking it does.
struct TypedChoice {
    juce::String label;
    std::function<void()> pick;
};

/// What a field offers beyond its values, where its card stands for a run or may become one.
struct MenuExtras {
    /// A row of the menu beside those of the values: "Range …".
    struct Row {
        juce::String label;
        /// In front of the value at this position; behind all of them at first.
        std::size_t position = std::numeric_limits<std::size_t>::max();
        std::function<void(FieldView& field)> pick;
    };

    /// What the field shows in the place of its value; an empty text where it shows the value.
    std::function<juce::String()> shown;
    std::optional<Row> row;
    /// What a text means that stands for no value; nothing where it means nothing.
    std::function<std::optional<TypedChoice>(const juce::String& typed)> typed;
    bool isOfSeveral = false;  ///< whether the value is that of several rules
};

}  // namespace quillo
