// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/EventBox.hpp"

#include <array>
#include <utility>
#include <variant>

#include "midi/Status.hpp"

namespace quillo {

namespace {

using Voice = VoiceCategoryTriggerVariantsV2;
using Message = MessageBasedTriggerVariantsV2;

constexpr std::uint8_t lastChannel = 15;
constexpr std::uint8_t lastData = 127;
constexpr std::size_t dataCount = 128;

/// How many numbers an event of a kind takes in each of its three places, and the status byte on channel 1.
struct Extent {
    std::size_t channels;
    std::size_t data1;
    std::size_t data2;
    std::uint8_t status;

    [[nodiscard]] constexpr std::size_t size() const { return channels * data1 * data2; }
};

/// By kind.
constexpr std::array<Extent, 10> extents{{{16, dataCount, 1, midi::noteOff},
                                          {16, dataCount, 1, midi::noteOn},
                                          {16, dataCount, dataCount, midi::controlChange},
                                          {16, dataCount, 1, midi::programChange},
                                          {1, 1, 1, midi::startCommand},
                                          {1, 1, 1, midi::continueCommand},
                                          {1, 1, 1, midi::stopCommand},
                                          {1, 1, 1, 0},
                                          {1, 1, 1, 0},
                                          {1, 1, 1, 0}}};

/// By kind: the number of its first event; behind the last kind, of how many there are.
constexpr auto firstNumbers = [] {
    std::array<std::size_t, extents.size() + 1> numbers{};
    for (std::size_t kind = 0; kind < extents.size(); ++kind) {
        numbers[kind + 1] = numbers[kind] + extents[kind].size();
    }
    return numbers;
}();
static_assert(firstNumbers.back() == EventBox::eventCount);

const Extent& extentOf(EventKind kind) {
    return extents.at(static_cast<std::size_t>(kind));
}

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
    return {static_cast<std::uint8_t>(extentOf(kind).status | channel), data1, data2};
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
        isEmpty_ = isEmpty_ || !range.holds(exact->value);
        range = {exact->value, exact->value};
    }
}

std::size_t EventBox::numberOf(const Event& event) {
    const auto& extent = extentOf(event.kind);
    return firstNumbers.at(static_cast<std::size_t>(event.kind)) +
           (event.channel * extent.data1 + event.data1) * extent.data2 + event.data2;
}

Event EventBox::eventAt(std::size_t number) {
    std::size_t kind = 0;
    while (number >= firstNumbers.at(kind + 1)) {
        ++kind;
    }
    number -= firstNumbers.at(kind);
    const auto& extent = extents.at(kind);
    return {static_cast<EventKind>(kind), static_cast<std::uint8_t>(number / extent.data2 / extent.data1),
            static_cast<std::uint8_t>(number / extent.data2 % extent.data1),
            static_cast<std::uint8_t>(number % extent.data2)};
}

bool EventBox::contains(const Event& event) const {
    return !isEmpty_ && event.kind == kind_ && channels_.holds(event.channel) && data1_.holds(event.data1) &&
           data2_.holds(event.data2);
}

}  // namespace quillo
