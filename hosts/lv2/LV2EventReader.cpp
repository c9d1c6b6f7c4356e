// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2EventReader.hpp"

#include "hosts/lv2/LV2Bytes.hpp"

namespace quillo {

LV2EventReader::LV2EventReader(const LV2_Atom_Sequence* sequence, LV2_URID sequenceType) QUILLO_REALTIME {
    if (sequence == nullptr || sequence->atom.type != sequenceType ||
        sequence->atom.size < sizeof(LV2_Atom_Sequence_Body)) {
        return;
    }
    const auto* events = reinterpret_cast<const std::uint8_t*>(sequence + 1);
    left_ = {events, sequence->atom.size - sizeof(LV2_Atom_Sequence_Body)};
}

std::optional<LV2Event> LV2EventReader::next() QUILLO_REALTIME {
    if (left_.size() < sizeof(LV2_Atom_Event)) {
        return std::nullopt;
    }
    const auto head = lv2Value<LV2_Atom_Event>(left_);
    const auto rest = left_.subspan(sizeof(LV2_Atom_Event));
    if (rest.size() < head.body.size) {
        return std::nullopt;
    }
    left_ = lv2Behind(rest, head.body.size);
    return LV2Event{head.time.frames, head.body.type, rest.first(head.body.size)};
}

}  // namespace quillo
