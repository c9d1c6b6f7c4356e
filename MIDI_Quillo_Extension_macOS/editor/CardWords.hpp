// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/FieldPlan.hpp"
#include "editor/Palette.hpp"

namespace quillo {

/// What a field says where it stands without its caption: "channel 2", "64 : Sustain", "+ 300 ms".
struct CardWord {
    juce::String text;  ///< empty for what goes without saying, such as no delay
    MyRGB colour;
    std::size_t field = 0;  ///< its place among the fields of its section

    bool operator==(const CardWord&) const = default;
};

/// The words of a section's fields in the order in which they stand in a line: the channel behind the values.
/// Those that go without saying stand at their place as well.
[[nodiscard]] std::vector<CardWord> wordsOf(const FieldPlans& fields);

}  // namespace quillo
