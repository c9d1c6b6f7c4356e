// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/RuleIndex.hpp"

#include <numeric>
#include <optional>
#include <variant>

#include "rules/StatusV2.hpp"

namespace quillo {

namespace {

// Buckets of channel voice messages: kind × (16 channels and any) × (128 first data bytes and any). A first
// data byte above 127 shares the bucket of its low seven bits; the entry's pattern tells them apart.
constexpr std::size_t anyChannel = 16;
constexpr std::size_t channelSlots = 17;
constexpr std::size_t anyData = 128;
constexpr std::size_t dataSlots = 129;
constexpr std::size_t voiceKinds = 4;
constexpr std::size_t voiceBuckets = voiceKinds * channelSlots * dataSlots;

// After them: one bucket for each MIDI transport message and each host transport event.
constexpr std::size_t midiStartBucket = voiceBuckets;
constexpr std::size_t midiStopBucket = voiceBuckets + 1;
constexpr std::size_t midiContinueBucket = voiceBuckets + 2;
constexpr std::size_t hostBuckets = voiceBuckets + 3;
constexpr std::size_t bucketCount = hostBuckets + 3;

enum VoiceKind : std::size_t { noteOnKind, noteOffKind, controlChangeKind, programChangeKind };

constexpr std::size_t voiceBucket(std::size_t kind, std::size_t channel, std::size_t data) QUILLO_REALTIME {
    return (kind * channelSlots + channel) * dataSlots + data;
}

constexpr std::size_t dataSlot(std::uint8_t byte) QUILLO_REALTIME {
    return byte & 0x7FU;
}

std::size_t hostBucket(HostTransportTriggerVariantsV2 trigger) QUILLO_REALTIME {
    return hostBuckets + static_cast<std::size_t>(trigger);
}

std::size_t dataSlot(const TriggerValueV2& value) {
    const auto* exact = value.getIf<TriggerValueV2::Value>();
    return exact != nullptr ? dataSlot(exact->value) : anyData;
}

/// The bucket of a voice trigger; none for a channel that no message has.
std::optional<std::size_t> bucketOf(const VoiceCategoryTriggerV2& voice) {
    using Kind = VoiceCategoryTriggerVariantsV2;
    const auto* channel = voice.channel.getIf<TriggerValueV2::Value>();
    if (channel != nullptr && channel->value >= anyChannel) {
        return std::nullopt;
    }
    const auto in = [&](VoiceKind kind, std::size_t data) {
        return voiceBucket(kind, channel != nullptr ? channel->value : anyChannel, data);
    };
    return std::visit(Overloaded{
                          [&](const Kind::NoteOn& on) { return in(noteOnKind, dataSlot(on.note)); },
                          [&](const Kind::NoteOff& off) { return in(noteOffKind, dataSlot(off.note)); },
                          [&](const Kind::ControlChange& change) {
                              return in(controlChangeKind, dataSlot(change.controller));
                          },
                          [&](const Kind::ProgramChange& change) {
                              return in(programChangeKind, dataSlot(change.program));
                          },
                      },
                      voice.variants.variant());
}

std::optional<std::size_t> bucketOf(const MessageBasedTriggerVariantsV2& trigger) {
    using Trigger = MessageBasedTriggerVariantsV2;
    using Bucket = std::optional<std::size_t>;
    return std::visit(Overloaded{
                          [](const Trigger::VoiceCategory& voice) { return bucketOf(voice.voice); },
                          [](Trigger::Start) -> Bucket { return midiStartBucket; },
                          [](Trigger::Stop) -> Bucket { return midiStopBucket; },
                          [](Trigger::Continue) -> Bucket { return midiContinueBucket; },
                      },
                      trigger.variant());
}

/// An index entry and where it belongs.
struct Placement {
    std::optional<std::size_t> bucket;
    RuleIndex::Entry entry;
};

Placement place(const MIDIRuleInternal& rule, RuleOrdinal ordinal) {
    using Part = RuleInternalPartVariants;
    if (const auto* message = rule.variants.getIf<Part::WithMessageBasedTrigger>()) {
        const auto& trigger = message->part.variants;
        return {bucketOf(trigger), {ordinal, TriggerPattern(trigger)}};
    }
    const auto* host = rule.variants.getIf<Part::WithHostBasedTrigger>();
    return {hostBucket(host->part.trigger), {ordinal, TriggerPattern()}};
}

/// The voice kind of a status byte, or `voiceKinds` when rules know no such kind.
std::size_t voiceKind(std::uint8_t status) QUILLO_REALTIME {
    switch (status & 0xF0) {
    case statusNibble(StatusV2::noteOn): return noteOnKind;
    case statusNibble(StatusV2::noteOff): return noteOffKind;
    case statusNibble(StatusV2::CC): return controlChangeKind;
    case statusNibble(StatusV2::programChange): return programChangeKind;
    default: return voiceKinds;
    }
}

}  // namespace

RuleIndex::RuleIndex(std::span<const MIDIRuleInternal> rules) : bucketStarts_(bucketCount + 1) {
    std::vector<Placement> placements;
    placements.reserve(rules.size());
    for (const auto& rule : rules) {
        const auto ordinal = static_cast<RuleOrdinal>(placements.size());
        placements.push_back(place(rule, ordinal));
        if (const auto& bucket = placements.back().bucket) {
            ++bucketStarts_[*bucket + 1];
        }
        if (rule.passThrough == PassThroughV2::EatNonMatching) {
            eatNonMatching_.push_back(ordinal);
        }
    }
    eatNonMatching_.push_back(noRule);
    std::partial_sum(bucketStarts_.begin(), bucketStarts_.end(), bucketStarts_.begin());
    entries_.resize(bucketStarts_.back());
    auto nextFree = bucketStarts_;
    for (const auto& placement : placements) {
        if (placement.bucket) {
            entries_[nextFree[*placement.bucket]++] = placement.entry;
        }
    }
}

std::span<const RuleIndex::Entry> RuleIndex::bucket(std::size_t number) const QUILLO_REALTIME {
    const auto start = bucketStarts_[number];
    return {entries_.data() + start, bucketStarts_[number + 1] - start};
}

RuleIndex::Matches RuleIndex::matching(const TriggerBytes& message) const QUILLO_REALTIME {
    Matches matches(message);
    const auto kind = voiceKind(message.status);
    if (kind != voiceKinds) {
        const std::size_t channel = message.status & 0x0FU;
        const auto data = dataSlot(message.data1);
        matches.add(bucket(voiceBucket(kind, channel, data)));
        matches.add(bucket(voiceBucket(kind, channel, anyData)));
        matches.add(bucket(voiceBucket(kind, anyChannel, data)));
        matches.add(bucket(voiceBucket(kind, anyChannel, anyData)));
    } else if (message.status == 0xFA) {
        matches.add(bucket(midiStartBucket));
    } else if (message.status == 0xFB) {
        matches.add(bucket(midiContinueBucket));
    } else if (message.status == 0xFC) {
        matches.add(bucket(midiStopBucket));
    }
    return matches;
}

RuleIndex::Matches RuleIndex::matching(HostTransportTriggerVariantsV2 trigger) const QUILLO_REALTIME {
    Matches matches(TriggerBytes{});
    matches.add(bucket(hostBucket(trigger)));
    return matches;
}

void RuleIndex::Matches::add(std::span<const Entry> bucket) QUILLO_REALTIME {
    if (!bucket.empty()) {
        ranges_[rangeCount_++] = {bucket.data(), bucket.data() + bucket.size()};
    }
}

RuleOrdinal RuleIndex::Matches::next() QUILLO_REALTIME {
    for (;;) {
        Range* earliest = nullptr;
        for (std::size_t i = 0; i < rangeCount_; ++i) {
            auto& range = ranges_[i];
            if (range.next != range.end &&
                (earliest == nullptr || range.next->ordinal < earliest->next->ordinal)) {
                earliest = &range;
            }
        }
        if (earliest == nullptr) {
            return noRule;
        }
        const auto& entry = *earliest->next++;
        if (entry.pattern.matches(message_)) {
            return entry.ordinal;
        }
    }
}

}  // namespace quillo
