// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hosts/lv2/LV2Headers.hpp"

namespace quillo {

/// The key under which a host keeps the state document: the state's one property.
inline constexpr const char* lv2StateKey = "urn:midi-quillo:lv2#midi-quillo-state";

/// The numbers that a host has for the names of things. Asked for once, while the instance is made.
struct LV2URIDs {
    /// Throws a `FatalError` when the host has none for a name: 0 is the number of no name.
    explicit LV2URIDs(LV2_URID_Map& map);

    LV2_URID atomBlank;
    LV2_URID atomChunk;
    LV2_URID atomDouble;
    LV2_URID atomFloat;
    LV2_URID atomInt;
    LV2_URID atomLong;
    LV2_URID atomObject;
    LV2_URID atomSequence;
    LV2_URID atomString;
    LV2_URID midiEvent;
    LV2_URID stateChanged;
    LV2_URID stateKey;
    LV2_URID timeFrame;
    LV2_URID timePosition;
    LV2_URID timeSpeed;
};

}  // namespace quillo
