// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "rules/RuleEntry.hpp"
#include "rules/TaggedUnion.hpp"

namespace quillo {

struct MIDIRuleTypeCases {
    /// A rule that sends this kind of message.
    struct OutputType {
        OutputEntryType type;
        bool operator==(const OutputType&) const = default;
    };
    /// A rule that sends this controller with the value 0.
    struct ControlChangeShortCut {
        std::uint8_t controller;
        bool operator==(const ControlChangeShortCut&) const = default;
    };
};

/// What the menu for new rules offers.
struct MIDIRuleType : MIDIRuleTypeCases,
                      TaggedUnion<MIDIRuleTypeCases::OutputType, MIDIRuleTypeCases::ControlChangeShortCut> {
    using TaggedUnion::TaggedUnion;
};

/// The entry of a new rule of this type, named "Message #" and `index`.
[[nodiscard]] RuleEntry defaultEntry(const MIDIRuleType& type, std::int64_t index);

}  // namespace quillo
