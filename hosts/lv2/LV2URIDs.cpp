// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2URIDs.hpp"

#include <string>

#include "platform/FatalError.hpp"

namespace quillo {

namespace {

LV2_URID idOf(LV2_URID_Map& map, const char* name) {
    const auto id = map.map(map.handle, name);
    if (id == 0) {
        fatalError(std::string("the host has no number for ") + name);
    }
    return id;
}

}  // namespace

LV2URIDs::LV2URIDs(LV2_URID_Map& map)
    : atomBlank(idOf(map, LV2_ATOM__Blank)),
      atomChunk(idOf(map, LV2_ATOM__Chunk)),
      atomDouble(idOf(map, LV2_ATOM__Double)),
      atomFloat(idOf(map, LV2_ATOM__Float)),
      atomInt(idOf(map, LV2_ATOM__Int)),
      atomLong(idOf(map, LV2_ATOM__Long)),
      atomObject(idOf(map, LV2_ATOM__Object)),
      atomSequence(idOf(map, LV2_ATOM__Sequence)),
      atomString(idOf(map, LV2_ATOM__String)),
      midiEvent(idOf(map, LV2_MIDI__MidiEvent)),
      stateChanged(idOf(map, LV2_STATE__StateChanged)),
      stateKey(idOf(map, lv2StateKey)),
      timeFrame(idOf(map, LV2_TIME__frame)),
      timePosition(idOf(map, LV2_TIME__Position)),
      timeSpeed(idOf(map, LV2_TIME__speed)) {}

}  // namespace quillo
