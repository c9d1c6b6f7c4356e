// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/EventLists.hpp"

#include <pluginterfaces/vst/ivstmidicontrollers.h>

#include "hosts/vst3/MIDIBufferWriter.hpp"

namespace quillo {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

/// The wrapper adds both ends.
constexpr std::size_t longestBody = MIDIBufferWriter::longestMessage - 2;

bool canBeTaken(const Event& event) {
    return event.type != Event::kDataEvent || (event.data.bytes != nullptr && event.data.size <= longestBody);
}

bool isPolyPressure(const Event& event) {
    return event.type == Event::kLegacyMIDICCOutEvent && event.midiCCOut.controlNumber == kCtrlPolyPressure;
}

}  // namespace

tresult EventListBefore::queryInterface(const TUID /*id*/, void** object) {
    *object = nullptr;
    return kNoInterface;
}

int32 EventListBefore::getEventCount() {
    return hosts_->getEventCount();
}

tresult EventListBefore::getEvent(int32 index, Event& event) {
    return hosts_->getEvent(index, event);
}

tresult EventListBefore::addEvent(Event& event) {
    return hosts_->addEvent(event);
}

tresult IncomingEvents::getEvent(int32 index, Event& event) {
    const auto result = EventListBefore::getEvent(index, event);
    return result == kResultOk && !canBeTaken(event) ? kResultFalse : result;
}

tresult OutgoingEvents::addEvent(Event& event) {
    constexpr float highest = 127.0F;
    if (!isPolyPressure(event)) {
        return EventListBefore::addEvent(event);
    }
    auto pressure = event;
    pressure.type = Event::kPolyPressureEvent;
    pressure.polyPressure = {event.midiCCOut.channel, event.midiCCOut.value,
                             static_cast<float>(event.midiCCOut.value2) / highest, -1};
    return EventListBefore::addEvent(pressure);
}

}  // namespace quillo
