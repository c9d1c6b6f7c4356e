// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "rules/RuleEntry.hpp"

/// Entries of every kind, for statements about all of them.
namespace quillo::test {

inline constexpr std::size_t outputTypeCount = 7;
inline constexpr std::size_t triggerTypeCount = 11;

inline std::vector<OutputEntryType> everyOutputType() {
    std::vector<OutputEntryType> types;
    for (std::size_t type = 0; type < outputTypeCount; ++type) {
        types.push_back(static_cast<OutputEntryType>(type));
    }
    return types;
}

inline std::vector<TriggerEntryType> everyTriggerType() {
    std::vector<TriggerEntryType> types;
    for (std::size_t type = 0; type < triggerTypeCount; ++type) {
        types.push_back(static_cast<TriggerEntryType>(type));
    }
    return types;
}

/// Outputs of this type with each combination of fixed and copied fields.
inline std::vector<RuleOutputEntry> everyOutput(OutputEntryType type) {
    constexpr unsigned fieldCount = 6;
    std::vector<RuleOutputEntry> outputs;
    for (unsigned copied = 0; copied < 1U << fieldCount; ++copied) {
        const auto choose = [copied](unsigned field, std::uint8_t fixed) -> GenericByteV2 {
            if ((copied >> field & 1U) != 0) {
                return GenericByteV2::RespectiveTriggerByte{};
            }
            return GenericByteV2::Value{fixed};
        };
        RuleOutputEntry output;
        output.type = type;
        if ((copied & 1U) != 0) {
            output.channel = RuleOutputChannelV2::TriggerChannel{};
        } else {
            output.channel = RuleOutputChannelV2::Value{5};
        }
        output.note = choose(1, 72);
        output.velocity = choose(2, 99);
        output.controller = choose(3, 11);
        output.controllerValue = choose(4, 12);
        output.program = choose(5, 13);
        output.pitch.value = 1234;
        output.bank = 2;
        output.pressure = 14;
        output.systemExclusive = {1, 2, 3};
        output.delay.ms = 250;
        outputs.push_back(output);
    }
    return outputs;
}

/// The product of all trigger types, output types and fixed or copied fields.
inline std::vector<RuleEntry> everyEntry() {
    std::vector<RuleEntry> entries;
    for (const auto trigger : everyTriggerType()) {
        for (const auto type : everyOutputType()) {
            for (const auto& output : everyOutput(type)) {
                RuleEntry entry;
                entry.trigger.type = trigger;
                entry.trigger.channel = TriggerValueV2::Value{3};
                entry.trigger.note = TriggerValueV2::Value{40};
                entry.trigger.controller = 7;
                entry.trigger.controllerValue = TriggerValueV2::Value{41};
                entry.trigger.program = TriggerValueV2::Value{42};
                entry.trigger.passThrough = PassThroughV2::EatMatching;
                entry.output = output;
                entry.name = "every";
                entries.push_back(entry);
            }
        }
    }
    return entries;
}

}  // namespace quillo::test
