// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/clap/CLAPOutput.hpp"

#include <algorithm>

namespace quillo {

namespace {

constexpr std::uint8_t systemExclusive = 0xF0;
constexpr std::uint16_t port = 0;

bool isSystemExclusive(const OutgoingMessages::Message& message) QUILLO_REALTIME {
    return message.bytes.front() == systemExclusive;
}

template <class Event>
clap_event_header_t headerOf(std::uint32_t offset, std::uint16_t type) QUILLO_REALTIME {
    return {sizeof(Event), offset, CLAP_CORE_EVENT_SPACE_ID, type, 0};
}

}  // namespace

void CLAPOutput::begin(const clap_output_events_t* events) QUILLO_REALTIME {
    events_ = events;
    if (events_ == nullptr || events_->try_push == nullptr || !isWaiting()) {
        return;
    }
    const auto left = offer(left_);
    const bool isEmptyYet = left.size() == left_.size();
    left_ = isEmptyYet ? offerBehindSystemExclusive() : left;
}

/// With the host's list empty yet, and its first message refused: room is not what that one lacks if the host takes
/// one behind it. Where nothing but system exclusive waits, no message is there to tell, and new ones must not be
/// held up.
CLAPOutput::Messages CLAPOutput::offerBehindSystemExclusive() QUILLO_REALTIME {
    auto others = left_;
    while (!others.empty() && isSystemExclusive(others.front())) {
        others = others.subspan(1);
        if (const auto left = offer(others); left.size() < others.size()) {
            lose(left_.first(left_.size() - others.size()));
            return left;
        }
    }
    if (!others.empty()) {
        return left_;
    }
    lose(left_);
    return others;
}

void CLAPOutput::lose(Messages messages) QUILLO_REALTIME {
    for (const auto& message : messages) {
        lost_.add(message.bytes, true);
    }
}

void CLAPOutput::send(Messages messages) QUILLO_REALTIME {
    if (const auto refused = offer(messages); !refused.empty()) {
        keep(refused);
    }
}

void CLAPOutput::keep(Messages messages) QUILLO_REALTIME {
    waiting_.clear();
    for (const auto& message : messages) {
        if (!waiting_.tryPush(0, message.bytes)) {
            break;
        }
    }
    left_ = waiting_.inTimeOrder();
}

/// What the host has not taken of these.
CLAPOutput::Messages CLAPOutput::offer(Messages messages) const QUILLO_REALTIME {
    while (!messages.empty() && tryPush(messages.front())) {
        messages = messages.subspan(1);
    }
    return messages;
}

bool CLAPOutput::tryPush(const OutgoingMessages::Message& message) const QUILLO_REALTIME {
    const auto bytes = message.bytes;
    if (isSystemExclusive(message)) {
        const clap_event_midi_sysex_t event{
            headerOf<clap_event_midi_sysex_t>(message.offset, CLAP_EVENT_MIDI_SYSEX), port, bytes.data(),
            static_cast<std::uint32_t>(bytes.size())};
        return tryPush(event.header);
    }
    clap_event_midi_t event{headerOf<clap_event_midi_t>(message.offset, CLAP_EVENT_MIDI), port, {}};
    std::ranges::copy(bytes.first(std::min(bytes.size(), std::size(event.data))), event.data);
    return tryPush(event.header);
}

bool CLAPOutput::tryPush(const clap_event_header_t& event) const QUILLO_REALTIME {
    QUILLO_REALTIME_EXEMPT("the host's own list, made for its audio thread")
    return events_ != nullptr && events_->try_push != nullptr && events_->try_push(events_, &event);
    QUILLO_REALTIME_EXEMPT_END
}

}  // namespace quillo
