// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

#include "engine/RuleProcessor.hpp"
#include "support/OutputRecorder.hpp"

namespace quillo::test {

/// A processor as a unit has it, at 48 samples a millisecond, in a cycle from 0 that never ends: whatever an
/// event sends comes out at once.
class EndlessProcessor {
public:
    static constexpr SampleTime samplesPerMillisecond = 48;

    explicit EndlessProcessor(const std::vector<Rule>& rules) {
        processor_.sampleRate = 1000 * samplesPerMillisecond;
        processor_.setRules(rules);
    }

    std::vector<Emission> run(const MIDIMessage& message) {
        std::array<std::uint8_t, 3> data{};
        std::ranges::copy(message.bytes(), data.begin());
        processor_.processMIDIEvent(OutputFunction(target_), 0, data, message.size(), end);
        return recorder_.take();
    }

    std::vector<Emission> run(HostTransportTriggerVariantsV2 change) {
        processor_.processHostTransport(OutputFunction(target_), change, 0, end);
        return recorder_.take();
    }

    std::vector<Emission> load() {
        processor_.onLoad(OutputFunction(target_), 0, end);
        return recorder_.take();
    }

private:
    static constexpr auto end = std::numeric_limits<SampleTime>::max();

    RuleProcessor processor_;
    OutputRecorder recorder_;
    WithoutDeadline<std::reference_wrapper<OutputRecorder>> target_{recorder_};
};

}  // namespace quillo::test
