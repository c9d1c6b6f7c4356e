// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/clap/CLAPOutput.hpp"

#include <algorithm>

#include "midi/Status.hpp"

namespace quillo {

namespace {

template <class Event>
clap_event_header_t headerOf(std::uint32_t offset, std::uint16_t type) QUILLO_REALTIME {
    return {sizeof(Event), offset, CLAP_CORE_EVENT_SPACE_ID, type, 0};
}

}  // namespace

void CLAPOutput::begin(const clap_output_events_t* events) QUILLO_REALTIME {
    events_ = events;
    if (events_ != nullptr && events_->try_push != nullptr && isWaiting()) {
        const auto left = offerFrom(next_);
        if (left == next_) {
            offerBehindSystemExclusive();
        } else {
            next_ = left;
        }
    }
    isHeldUp_ = isWaiting();
    if (!isHeldUp_) {
        waiting_.clear();
        next_ = 0;
    }
}

/// With the host's list empty yet, and its first message refused: room is not what that one lacks if the host
/// takes one behind it. Where nothing but system exclusive waits, no message is there to tell, and new ones
/// must not be held up.
void CLAPOutput::offerBehindSystemExclusive() QUILLO_REALTIME {
    auto others = next_;
    while (others < waiting_.size() && midi::isSystemExclusive(waiting_[others])) {
        ++others;
        if (const auto left = offerFrom(others); left > others) {
            loseUntil(others);
            next_ = left;
            return;
        }
    }
    if (others == waiting_.size()) {
        loseUntil(others);
    }
}

void CLAPOutput::loseUntil(std::size_t index) QUILLO_REALTIME {
    for (; next_ < index; ++next_) {
        lost_.add(waiting_[next_], true);
    }
}

CLAPOutput::Room CLAPOutput::roomFor(Bytes bytes, const Waiting& waiting) const QUILLO_REALTIME {
    const bool couldWait = waiting_.hasRoomFor(waiting.messages + 1, waiting.bytes + bytes.size());
    return !isHeldUp_ && couldWait ? Room::enough : Room::full;
}

void CLAPOutput::write(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    if (isWaiting() || !tryPush(offset, bytes)) {
        static_cast<void>(waiting_.tryPush(bytes));
    }
}

/// Offers the messages that wait, from number `index` on. The first that the host has not taken.
std::size_t CLAPOutput::offerFrom(std::size_t index) const QUILLO_REALTIME {
    while (index < waiting_.size() && tryPush(0, waiting_[index])) {
        ++index;
    }
    return index;
}

bool CLAPOutput::tryPush(std::uint32_t offset, Bytes bytes) const QUILLO_REALTIME {
    if (midi::isSystemExclusive(bytes)) {
        const clap_event_midi_sysex_t event{headerOf<clap_event_midi_sysex_t>(offset, CLAP_EVENT_MIDI_SYSEX),
                                            clapMessagePort, bytes.data(),
                                            static_cast<std::uint32_t>(bytes.size())};
        return tryPush(event.header);
    }
    clap_event_midi_t event{headerOf<clap_event_midi_t>(offset, CLAP_EVENT_MIDI), clapMessagePort, {}};
    std::ranges::copy(bytes.first(std::min(bytes.size(), std::size(event.data))), event.data);
    return tryPush(event.header);
}

bool CLAPOutput::tryPush(const clap_event_header_t& event) const QUILLO_REALTIME {
    QUILLO_REALTIME_EXEMPT("the host's own list, made for its audio thread")
    return events_ != nullptr && events_->try_push != nullptr && events_->try_push(events_, &event);
    QUILLO_REALTIME_EXEMPT_END
}

}  // namespace quillo
