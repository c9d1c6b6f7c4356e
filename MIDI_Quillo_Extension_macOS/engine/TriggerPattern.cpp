// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/TriggerPattern.hpp"

#include <variant>

#include "midi/Status.hpp"
#include "rules/RuleOutputV2.hpp"

namespace quillo {

namespace {

constexpr std::uint32_t statusMask = 0xFF;
constexpr std::uint32_t data1Mask = 0xFF00;

}  // namespace

TriggerPattern::TriggerPattern(const MessageBasedTriggerVariantsV2& trigger) {
    using Trigger = MessageBasedTriggerVariantsV2;
    std::visit(Overloaded{
                   [this](const Trigger::VoiceCategory& voice) { requireVoice(voice.voice); },
                   [this](Trigger::Start) { require(midi::startCommand, statusMask); },
                   [this](Trigger::Stop) { require(midi::stopCommand, statusMask); },
                   [this](Trigger::Continue) { require(midi::continueCommand, statusMask); },
               },
               trigger.variant());
}

std::optional<TriggerCondition> TriggerPattern::firstFailure(const TriggerBytes& message) const {
    const auto word = message.status | std::uint32_t{message.data1} << 8 | std::uint32_t{message.data2} << 16;
    const auto different = (word ^ value_) & mask_;
    if (different == 0) {
        return std::nullopt;
    }
    // All eight bits of a system message's status say what it is: it has no channel.
    const auto kindBits = (value_ & midi::kindMask) == midi::kindMask ? statusMask : midi::kindMask;
    if ((different & kindBits) != 0) {
        return TriggerCondition::kind;
    }
    if ((different & (midi::channelMask | impossibleBit)) != 0) {
        return TriggerCondition::channel;
    }
    return (different & data1Mask) != 0 ? TriggerCondition::data1 : TriggerCondition::data2;
}

std::optional<std::uint8_t> TriggerPattern::byte(unsigned position) const {
    constexpr std::uint32_t wholeByte = 0xFF;
    if ((mask_ >> (8 * position) & wholeByte) != wholeByte) {
        return std::nullopt;
    }
    return static_cast<std::uint8_t>(value_ >> (8 * position));
}

void TriggerPattern::require(std::uint32_t value, std::uint32_t mask) {
    value_ |= value;
    mask_ |= mask;
}

void TriggerPattern::requireByte(const TriggerValueV2& value, unsigned position) {
    if (const auto* exact = value.getIf<TriggerValueV2::Value>()) {
        require(std::uint32_t{exact->value} << (8 * position), 0xFFU << (8 * position));
    }
}

void TriggerPattern::requireChannel(const TriggerValueV2& channel) {
    const auto* exact = channel.getIf<TriggerValueV2::Value>();
    if (exact == nullptr) {
        return;
    }
    if (exact->value > midi::channelMask) {
        require(impossibleBit, impossibleBit);
    } else {
        require(exact->value, midi::channelMask);
    }
}

void TriggerPattern::requireVoice(const VoiceCategoryTriggerV2& voice) {
    using Kind = VoiceCategoryTriggerVariantsV2;
    const auto requireKind = [this](StatusV2 of) { require(statusNibble(of), midi::kindMask); };
    requireChannel(voice.channel);
    std::visit(Overloaded{
                   [&](const Kind::NoteOn& noteOn) {
                       requireKind(StatusV2::noteOn);
                       requireByte(noteOn.note, data1);
                   },
                   [&](const Kind::NoteOff& noteOff) {
                       requireKind(StatusV2::noteOff);
                       requireByte(noteOff.note, data1);
                   },
                   [&](const Kind::ControlChange& change) {
                       requireKind(StatusV2::CC);
                       requireByte(TriggerValueV2::Value{change.controller}, data1);
                       requireByte(change.value, data2);
                   },
                   [&](const Kind::ProgramChange& change) {
                       requireKind(StatusV2::programChange);
                       requireByte(change.program, data1);
                   },
               },
               voice.variants.variant());
}

}  // namespace quillo
