// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <cstring>
#include <deque>
#include <span>
#include <vector>

#include "hosts/clap/CLAPHeaders.hpp"
#include "support/OutputRecorder.hpp"

namespace quillo::test {

inline constexpr double clapSampleRate = 48000.0;

/// A transport that tells its position in seconds, or with `beats` in beats of 120 a minute.
clap_event_transport_t clapTransport(std::uint32_t flags, double positionInFrames, bool beats = false);

/// The events of a block, in the order in which they were added: a host's list.
class CLAPEvents {
public:
    CLAPEvents();
    CLAPEvents(const CLAPEvents&) = delete;
    CLAPEvents& operator=(const CLAPEvents&) = delete;

    /// A message as an event of its kind: short, or system exclusive.
    void addMIDI(std::uint32_t time, const Bytes& bytes, std::uint16_t port = 0);

    /// A note event of this type; -1 leaves a value open.
    void addNote(std::uint16_t type, std::uint32_t time, int channel, int key, double velocity = 0.0,
                 std::int32_t id = -1, int port = 0);

    void addExpression(std::int32_t expression, std::uint32_t time, int channel, int key, double value,
                       std::int32_t id = -1, int port = 0);

    void addTransport(std::uint32_t time, clap_event_transport_t event);

    /// Any event, whatever its header says.
    template <class Event>
    void add(const Event& event) {
        auto& bytes =
            events_.emplace_back((sizeof(Event) + sizeof(std::uint64_t) - 1) / sizeof(std::uint64_t));
        std::memcpy(bytes.data(), &event, sizeof(Event));
    }

    /// A place in the list where there is nothing.
    void addNothing() { events_.emplace_back(); }

    void clear() { events_.clear(); }

    [[nodiscard]] const clap_input_events_t* list() const { return &list_; }

private:
    template <class Event>
    Event made(std::uint16_t type, std::uint32_t time) const {
        Event event{};
        event.header = {sizeof(Event), time, CLAP_CORE_EVENT_SPACE_ID, type, 0};
        return event;
    }

    clap_input_events_t list_;
    std::deque<std::vector<std::uint64_t>> events_;
    std::deque<Bytes> systemExclusive_;
};

}  // namespace quillo::test
