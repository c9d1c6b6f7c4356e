// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "engine/Generator.hpp"
#include "engine/MIDIRuleInternal.hpp"
#include "engine/TriggerPattern.hpp"
#include "platform/RealTime.hpp"
#include "rules/RuleTriggerV2.hpp"

namespace quillo {

/// A rule's position in the chain.
using RuleOrdinal = std::uint32_t;

/// Comes after every rule.
inline constexpr RuleOrdinal noRule = std::numeric_limits<RuleOrdinal>::max();

/// Finds the rules that match an event without looking at the others, so that the time for an event depends
/// on the rules that it fires and not on how many there are.
///
/// Each rule lies in one bucket: its kind of message, its channel or any, its first data byte or any. A
/// message can match rules of four buckets only, and these are walked together in the order of the rules.
class RuleIndex {
public:
    struct Entry {
        RuleOrdinal ordinal = noRule;
        TriggerPattern pattern;
    };

    /// The rules that match one event, in order.
    class Matches {
    public:
        /// The next matching rule, or `noRule`.
        [[nodiscard]] RuleOrdinal next() QUILLO_REALTIME;

    private:
        friend class RuleIndex;

        struct Range {
            const Entry* next = nullptr;
            const Entry* end = nullptr;
        };

        explicit Matches(const TriggerBytes& message) QUILLO_REALTIME : message_(message) {}
        void add(std::span<const Entry> bucket) QUILLO_REALTIME;

        TriggerBytes message_;
        std::array<Range, 4> ranges_{};
        std::size_t rangeCount_ = 0;
    };

    /// [any but render]
    explicit RuleIndex(std::span<const MIDIRuleInternal> rules);

    /// Valid as long as the index.
    [[nodiscard]] Matches matching(const TriggerBytes& message) const QUILLO_REALTIME;
    [[nodiscard]] Matches matching(HostTransportTriggerVariantsV2 trigger) const QUILLO_REALTIME;

    /// The rules that consume what they do not match, in order, and `noRule` at the end.
    [[nodiscard]] const RuleOrdinal* eatNonMatching() const QUILLO_REALTIME { return eatNonMatching_.data(); }

private:
    [[nodiscard]] std::span<const Entry> bucket(std::size_t number) const QUILLO_REALTIME;

    /// The entries of all buckets, bucket after bucket, each in the order of the rules.
    std::vector<Entry> entries_;
    /// Where each bucket begins in `entries_`, and where the last one ends.
    std::vector<std::uint32_t> bucketStarts_;
    std::vector<RuleOrdinal> eatNonMatching_;
};

}  // namespace quillo
