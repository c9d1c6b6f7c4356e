// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/MIDIRuleType.hpp"

namespace quillo {

RuleEntry defaultEntry(const MIDIRuleType& type, std::int64_t index) {
    if (const auto* output = type.getIf<MIDIRuleType::OutputType>()) {
        return defaultEntry(output->type, index);
    }
    auto entry = defaultEntry(OutputEntryType::ControlChange, index);
    entry.output.controller =
        GenericByteV2::Value{type.getIf<MIDIRuleType::ControlChangeShortCut>()->controller};
    return entry;
}

}  // namespace quillo
