// SPDX-License-Identifier: GPL-3.0-or-later
#include "audiounit/platform/RenderEventList.hpp"

#include <algorithm>

namespace quillo {

RenderEventList::RenderEventList(std::size_t capacity) : slots_(capacity) {}

const AURenderEvent* RenderEventList::head() const QUILLO_REALTIME {
    return size_ == 0 ? nullptr : slots_[0].event;
}

bool RenderEventList::tryPushMIDI(AUEventSampleTime time, std::span<const std::uint8_t> bytes)
    QUILLO_REALTIME {
    AUMIDIEvent event;
    event.eventSampleTime = time;
    event.length = static_cast<std::uint16_t>(std::min(bytes.size(), event.data.size()));
    std::copy_n(bytes.begin(), event.length, event.data.begin());
    return tryPush(event);
}

bool RenderEventList::tryPush(const AUMIDIEvent& event) QUILLO_REALTIME {
    return tryAppend(&Slot::midi, event);
}

bool RenderEventList::tryPush(const AUMIDISysExEvent& event) QUILLO_REALTIME {
    return tryAppend(&Slot::sysEx, event);
}

bool RenderEventList::tryPush(const AURenderEvent& event) QUILLO_REALTIME {
    return tryAppend(&Slot::plain, event);
}

template <class Event>
bool RenderEventList::tryAppend(Event Slot::* kind, const Event& event) QUILLO_REALTIME {
    if (size_ == slots_.size()) {
        return false;
    }
    auto& slot = slots_[size_];
    slot.*kind = event;
    slot.event = &(slot.*kind);
    slot.event->next = nullptr;
    if (size_ > 0) {
        slots_[size_ - 1].event->next = slot.event;
    }
    ++size_;
    return true;
}

}  // namespace quillo
