// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/EventBox.hpp"

#include <algorithm>
#include <utility>
#include <variant>

namespace quillo {

namespace {

using Voice = VoiceCategoryTriggerVariantsV2;
using Message = MessageBasedTriggerVariantsV2;

constexpr std::uint8_t lastChannel = 15;
constexpr std::uint8_t lastData = 127;

EventKind kindOf(HostTransportTriggerVariantsV2 change) {
    switch (change) {
    case HostTransportTriggerVariantsV2::Start: return EventKind::hostStart;
    case HostTransportTriggerVariantsV2::Continue: return EventKind::hostContinue;
    case HostTransportTriggerVariantsV2::Stop: return EventKind::hostStop;
    }
    return {};
}

}  // namespace

TriggerBytes Event::bytes() const {
    return {static_cast<std::uint8_t>(eventExtents.at(static_cast<std::size_t>(kind)).status | channel),
            data1, data2};
}

EventBox::EventBox(const RuleTriggerV2& trigger) {
    if (const auto* message = trigger.getIf<RuleTriggerV2::MessageBased>()) {
        wait(message->trigger.variants);
    } else if (const auto* host = trigger.getIf<RuleTriggerV2::HostTransport>()) {
        kind_ = kindOf(host->trigger.variants);
    } else {
        isEmpty_ = true;
    }
}

void EventBox::wait(const MessageBasedTriggerVariantsV2& trigger) {
    std::visit(Overloaded{
                   [this](const Message::VoiceCategory& category) { wait(category.voice); },
                   [this](const Message::Start&) { kind_ = EventKind::start; },
                   [this](const Message::Stop&) { kind_ = EventKind::stop; },
                   [this](const Message::Continue&) { kind_ = EventKind::continues; },
               },
               trigger.variant());
}

void EventBox::wait(const VoiceCategoryTriggerV2& trigger) {
    channels_ = {0, lastChannel};
    narrow(channels_, trigger.channel);
    data1_ = {0, lastData};
    const auto waitFor = [this](EventKind kind, const TriggerValueV2& first) {
        kind_ = kind;
        narrow(data1_, first);
    };
    std::visit(
        Overloaded{
            [&](const Voice::NoteOn& on) { waitFor(EventKind::noteOn, on.note); },
            [&](const Voice::NoteOff& off) { waitFor(EventKind::noteOff, off.note); },
            [&](const Voice::ControlChange& change) {
                waitFor(EventKind::controlChange, TriggerValueV2::Value{change.controller});
                data2_ = {0, lastData};
                narrow(data2_, change.value);
            },
            [&](const Voice::ProgramChange& change) { waitFor(EventKind::programChange, change.program); },
        },
        trigger.variants.variant());
}

void EventBox::narrow(Range& range, const TriggerValueV2& value) {
    if (const auto* exact = value.getIf<TriggerValueV2::Value>()) {
        narrow(range, {exact->value, exact->value});
    }
}

void EventBox::narrow(Range& range, const Range& to) {
    range = {std::max(range.first, to.first), std::min(range.last, to.last)};
    isEmpty_ = isEmpty_ || range.first > range.last;
}

std::uint16_t EventBox::channels() const {
    return isEmpty_                           ? 0
           : channels_.first < channels_.last ? 0xFFFF
                                              : static_cast<std::uint16_t>(1U << channels_.first);
}

std::optional<std::uint8_t> EventBox::number() const {
    return data1_.first == data1_.last ? std::optional(data1_.first) : std::nullopt;
}

std::optional<std::uint8_t> EventBox::value() const {
    return data2_.first == data2_.last ? std::optional(data2_.first) : std::nullopt;
}

EventBox EventBox::common(const EventBox& one, const EventBox& other) {
    auto box = one;
    box.isEmpty_ = one.isEmpty_ || other.isEmpty_ || one.kind_ != other.kind_;
    box.narrow(box.channels_, other.channels_);
    box.narrow(box.data1_, other.data1_);
    box.narrow(box.data2_, other.data2_);
    return box;
}

Event EventBox::eventAt(std::size_t number) {
    std::size_t kind = 0;
    while (number >= firstEventNumbers.at(kind + 1)) {
        ++kind;
    }
    number -= firstEventNumbers.at(kind);
    const auto& extent = eventExtents.at(kind);
    return {static_cast<EventKind>(kind), static_cast<std::uint8_t>(number / extent.data2 / extent.data1),
            static_cast<std::uint8_t>(number / extent.data2 % extent.data1),
            static_cast<std::uint8_t>(number % extent.data2)};
}

bool EventBox::contains(const Event& event) const {
    return !isEmpty_ && event.kind == kind_ && channels_.holds(event.channel) && data1_.holds(event.data1) &&
           data2_.holds(event.data2);
}

}  // namespace quillo
