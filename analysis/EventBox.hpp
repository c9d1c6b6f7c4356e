// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "engine/Generator.hpp"
#include "midi/Status.hpp"
#include "rules/RuleTriggerV2.hpp"

namespace quillo {

/// The kinds of events that rules can wait for.
enum class EventKind : std::uint8_t {
    noteOff,
    noteOn,
    controlChange,
    programChange,
    start,
    continues,
    stop,
    hostStart,
    hostContinue,
    hostStop
};

/// An event in a host, as far as a rule can distinguish it from others: no rule looks at velocities.
struct Event {
    EventKind kind = EventKind::noteOff;
    std::uint8_t channel = 0;  ///< zero-based; 0 where there is none
    std::uint8_t data1 = 0;    ///< likewise
    std::uint8_t data2 = 0;    ///< a controller's value, 0 to 127; otherwise 0

    /// As a message for a rule that copies of it. All zeros for a change of the host's transport.
    [[nodiscard]] TriggerBytes bytes() const;

    bool operator==(const Event&) const = default;
};

/// How many numbers the events of a kind have in each of their three places, and the status byte on
/// channel 1.
struct EventExtent {
    std::size_t channels;
    std::size_t data1;
    std::size_t data2;
    std::uint8_t status;
};

/// By kind.
inline constexpr std::array<EventExtent, 10> eventExtents{{{16, 128, 1, midi::noteOff},
                                                           {16, 128, 1, midi::noteOn},
                                                           {16, 128, 128, midi::controlChange},
                                                           {16, 128, 1, midi::programChange},
                                                           {1, 1, 1, midi::startCommand},
                                                           {1, 1, 1, midi::continueCommand},
                                                           {1, 1, 1, midi::stopCommand},
                                                           {1, 1, 1, 0},
                                                           {1, 1, 1, 0},
                                                           {1, 1, 1, 0}}};

/// By kind: the number of its first event; behind the last kind, of how many there are.
inline constexpr auto firstEventNumbers = [] {
    std::array<std::size_t, eventExtents.size() + 1> numbers{};
    for (std::size_t kind = 0; kind < eventExtents.size(); ++kind) {
        const auto& extent = eventExtents[kind];
        numbers[kind + 1] = numbers[kind] + extent.channels * extent.data1 * extent.data2;
    }
    return numbers;
}();

/// All events that one trigger waits for: those of one kind whose channel and data bytes lie in ranges. Of
/// 268,294 events in all, a box holds at most 2,048.
class EventBox {
public:
    /// Events have numbers from 0 up to this one.
    static constexpr std::size_t eventCount = firstEventNumbers.back();

    /// Empty when no message has the channel or the data bytes that are waited for, and for an on-load rule.
    explicit EventBox(const RuleTriggerV2& trigger);

    [[nodiscard]] static std::size_t numberOf(const Event& event) {
        const auto kind = static_cast<std::size_t>(event.kind);
        const auto& extent = eventExtents[kind];
        return firstEventNumbers[kind] + (event.channel * extent.data1 + event.data1) * extent.data2 +
               event.data2;
    }

    [[nodiscard]] bool isEmpty() const { return isEmpty_; }
    [[nodiscard]] bool contains(const Event& event) const;
    [[nodiscard]] EventKind kind() const { return kind_; }

    /// One bit for each channel, channel 1 the lowest. 1 where the events have no channel.
    [[nodiscard]] std::uint16_t channels() const;
    /// The note, controller or program that all the events have; nothing where it may be any.
    [[nodiscard]] std::optional<std::uint8_t> number() const;
    /// The value that all the events have, likewise.
    [[nodiscard]] std::optional<std::uint8_t> value() const;

    /// The events that both hold.
    [[nodiscard]] static EventBox common(const EventBox& one, const EventBox& other);

    /// The event of this number.
    [[nodiscard]] static Event eventAt(std::size_t number);

    /// Calls `visit` with each event, in ascending order of the numbers, until it returns true. Whether it
    /// did.
    template <class Visit>
    bool any(Visit visit) const {
        Event event{kind_};
        for (unsigned channel = channels_.first; !isEmpty_ && channel <= channels_.last; ++channel) {
            event.channel = static_cast<std::uint8_t>(channel);
            for (unsigned data1 = data1_.first; data1 <= data1_.last; ++data1) {
                event.data1 = static_cast<std::uint8_t>(data1);
                for (unsigned data2 = data2_.first; data2 <= data2_.last; ++data2) {
                    event.data2 = static_cast<std::uint8_t>(data2);
                    if (visit(event)) {
                        return true;
                    }
                }
            }
        }
        return false;
    }

    auto operator<=>(const EventBox&) const = default;

private:
    struct Range {
        std::uint8_t first = 0;
        std::uint8_t last = 0;

        [[nodiscard]] bool holds(std::uint8_t value) const { return first <= value && value <= last; }
        auto operator<=>(const Range&) const = default;
    };

    void wait(const MessageBasedTriggerVariantsV2& trigger);
    void wait(const VoiceCategoryTriggerV2& trigger);
    void narrow(Range& range, const TriggerValueV2& value);
    void narrow(Range& range, const Range& to);

    EventKind kind_ = EventKind::noteOff;
    Range channels_;
    Range data1_;
    Range data2_;
    bool isEmpty_ = false;
};

}  // namespace quillo
