// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "rules/Rule.hpp"
#include "support/TestRules.hpp"

namespace quillo::fuzz {

/// A few rules that the events of a target meet: sent at once and later, fixed and copied, kept and consumed.
[[nodiscard]] inline std::vector<Rule> fuzzRules() {
    using namespace test;
    using Host = HostTransportTriggerVariantsV2;
    return {rule(onLoad(), send(programChange(channel(2), 1, byte(5)))),
            rule(onNoteOn(), send(protocol(StatusV2::noteOn, triggerChannel, triggerByte, triggerByte), 20)),
            rule(onNoteOff(), send(protocol(StatusV2::noteOff, triggerChannel, triggerByte, byte(0)), 20)),
            rule(onControlChange(7, any, any, PassThroughV2::EatMatching), send(controlChange(1, 11, 64))),
            rule(onProgramChange(), send(systemExclusive({0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7}), 1)),
            rule(onMIDIStart(), send(noteOn(0, 60, 100))),
            rule(onHost(Host::Start), send(noteOn(0, 61, 100))),
            rule(onHost(Host::Continue), send(noteOn(0, 62, 100))),
            rule(onHost(Host::Stop), send(noteOn(0, 63, 100), 5))};
}

}  // namespace quillo::fuzz
