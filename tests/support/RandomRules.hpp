// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "engine/Generator.hpp"
#include "rules/Rule.hpp"
#include "support/TestRules.hpp"

namespace quillo::test {

inline constexpr std::array policies{PassThroughV2::PassThrough, PassThroughV2::EatMatching,
                                     PassThroughV2::EatNonMatching};

/// Rule lists and events out of so few different numbers that they often meet: every kind of trigger and of
/// output, numbers that no message carries among them.
class RandomRules {
public:
    explicit RandomRules(unsigned seed) : random_(seed) {}

    /// The data bytes that rules and messages have.
    static constexpr std::array<std::uint8_t, 4> dataBytes{0, 1, 2, 129};

    /// A list of fewer rules than `limit`.
    std::vector<Rule> list(std::size_t limit = 12) {
        std::vector<Rule> rules;
        for (auto count = below(limit); count > 0; --count) {
            rules.push_back(ruleWaitingFor(trigger()));
        }
        return rules;
    }

    TriggerBytes message() {
        constexpr std::array<std::uint8_t, 14> statuses{0x80, 0x81, 0x90, 0x91, 0x92, 0xB0, 0xB1,
                                                        0xC0, 0xC1, 0xE0, 0xF8, 0xFA, 0xFB, 0xFC};
        return {oneOf(statuses), data(), data()};
    }

    HostTransportTriggerVariantsV2 transport() {
        return static_cast<HostTransportTriggerVariantsV2>(below(3));
    }

private:
    unsigned below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }

    template <class Values>
    Values::value_type oneOf(const Values& values) {
        return values[below(values.size())];
    }

    std::uint8_t data() { return oneOf(dataBytes); }
    TriggerValueV2 value() { return below(2) == 0 ? any : exactly(data()); }
    TriggerValueV2 onChannel() {
        return below(2) == 0 ? any : exactly(oneOf(std::array<std::uint8_t, 3>{0, 1, 17}));
    }
    PassThroughV2 policy() { return below(2) == 0 ? PassThroughV2::PassThrough : oneOf(policies); }

    RuleTriggerV2 trigger() {
        switch (below(9)) {
        case 0: return onLoad();
        case 1: return onHost(transport(), policy());
        case 2: return onMIDIStart(policy());
        case 3: return onMIDIStop(policy());
        case 4: return onMIDIContinue(policy());
        case 5: return onNoteOff(value(), onChannel(), policy());
        case 6: return onControlChange(data(), value(), onChannel(), policy());
        case 7: return onProgramChange(value(), onChannel(), policy());
        default: return onNoteOn(value(), onChannel(), policy());
        }
    }

    /// Only a rule that waits for a message can copy from it.
    Rule ruleWaitingFor(const RuleTriggerV2& trigger) {
        copies_ = trigger.is<RuleTriggerV2::MessageBased>();
        return rule(trigger, send(output(), below(4) == 0 ? below(2000) : 0));
    }

    RuleOutputVariantsV2 output() {
        constexpr std::array statuses{StatusV2::noteOn, StatusV2::noteOff, StatusV2::CC};
        switch (below(8)) {
        case 0: return systemExclusive({data(), data()});
        case 1: return programChange(sentOn(), data(), sentByte());
        case 2: return protocol(StatusV2::channelPressure, sentOn(), sentByte());
        default: return protocol(oneOf(statuses), sentOn(), sentByte(), sentByte());
        }
    }

    RuleOutputChannelV2 sentOn() {
        return copies_ && below(2) == 0 ? triggerChannel
                                        : channel(oneOf(std::array<std::uint8_t, 3>{0, 1, 9}));
    }
    GenericByteV2 sentByte() {
        constexpr std::array<std::uint8_t, 5> bytes{0, 1, 2, 120, 123};
        return copies_ && below(2) == 0 ? triggerByte : byte(oneOf(bytes));
    }

    std::mt19937 random_;
    bool copies_ = false;
};

}  // namespace quillo::test
