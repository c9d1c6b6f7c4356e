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
/// output, numbers that no message carries among them. A seed has the same ones with every compiler: where
/// the language leaves the order of a statement's parts open, each draw is a statement of its own.
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
        const auto kind = below(9);
        const auto change = transport();
        const auto byte = data();
        const auto second = value();
        const auto channel = onChannel();
        const auto passes = policy();
        switch (kind) {
        case 0: return onLoad();
        case 1: return onHost(change, passes);
        case 2: return onMIDIStart(passes);
        case 3: return onMIDIStop(passes);
        case 4: return onMIDIContinue(passes);
        case 5: return onNoteOff(second, channel, passes);
        case 6: return onControlChange(byte, second, channel, passes);
        case 7: return onProgramChange(second, channel, passes);
        default: return onNoteOn(second, channel, passes);
        }
    }

    /// Only a rule that waits for a message can copy from it.
    Rule ruleWaitingFor(const RuleTriggerV2& trigger) {
        copies_ = trigger.is<RuleTriggerV2::MessageBased>();
        const auto message = output();
        return rule(trigger, send(message, below(4) == 0 ? below(2000) : 0));
    }

    RuleOutputVariantsV2 output() {
        constexpr std::array statuses{StatusV2::noteOn, StatusV2::noteOff, StatusV2::CC};
        const auto kind = below(8);
        const auto status = oneOf(statuses);
        const auto on = sentOn();
        const auto byte = data();
        const auto first = sentByte();
        const auto second = sentByte();
        switch (kind) {
        case 0: return systemExclusive({byte, data()});
        case 1: return programChange(on, byte, first);
        case 2: return protocol(StatusV2::channelPressure, on, first);
        default: return protocol(status, on, first, second);
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
