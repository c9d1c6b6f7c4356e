// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/Generator.hpp"
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

/// An event that comes in a host, as far as a rule can tell it from others: a note's velocity is none of it.
struct Event {
    EventKind kind = EventKind::noteOff;
    std::uint8_t channel = 0;  ///< zero-based; 0 where there is none
    std::uint8_t data1 = 0;    ///< likewise
    std::uint8_t data2 = 0;    ///< a controller's value, 0 to 127; otherwise 0

    /// As a message for a rule that copies of it. All zeros for a change of the host's transport.
    [[nodiscard]] TriggerBytes bytes() const;

    bool operator==(const Event&) const = default;
};

/// All events that one trigger waits for: those of one kind whose channel and data bytes lie in ranges. Of
/// 268,294 events in all, a box holds at most 2,048.
class EventBox {
public:
    /// Events have numbers from 0 up to this one.
    static constexpr std::size_t eventCount = 268'294;

    /// Empty when no message has the channel or the data bytes that are waited for, and for an on-load rule.
    explicit EventBox(const RuleTriggerV2& trigger);

    [[nodiscard]] static std::size_t numberOf(const Event& event);

    [[nodiscard]] bool isEmpty() const { return isEmpty_; }
    [[nodiscard]] bool contains(const Event& event) const;
    [[nodiscard]] EventKind kind() const { return kind_; }

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

private:
    struct Range {
        std::uint8_t first = 0;
        std::uint8_t last = 0;

        [[nodiscard]] bool holds(std::uint8_t value) const { return first <= value && value <= last; }
    };

    void wait(const MessageBasedTriggerVariantsV2& trigger);
    void wait(const VoiceCategoryTriggerV2& trigger);
    void narrow(Range& range, const TriggerValueV2& value);

    EventKind kind_ = EventKind::noteOff;
    Range channels_;
    Range data1_;
    Range data2_;
    bool isEmpty_ = false;
};

}  // namespace quillo
