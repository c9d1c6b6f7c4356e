// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2Output.hpp"

#include <cstring>

namespace quillo {

namespace {

/// Of an event, in the sequence.
std::size_t sizeOf(std::size_t bodySize) QUILLO_REALTIME {
    return sizeof(LV2_Atom_Event) + lv2Padded(bodySize);
}

}  // namespace

void LV2Output::begin(LV2_Atom_Sequence* buffer, bool holdsInput) QUILLO_REALTIME {
    buffer_ = buffer;
    capacity_ = buffer == nullptr ? 0 : buffer->atom.size;
    if (holdsInput && buffer != nullptr && buffer->atom.type == ids_.atomSequence) {
        capacity_ += sizeof(LV2_Atom);
    }
    written_ = sizeof(LV2_Atom_Sequence);
}

bool LV2Output::fits(std::size_t size) const QUILLO_REALTIME {
    return written_ + size <= capacity_;
}

LV2Output::Room LV2Output::roomFor(Bytes bytes, const Waiting& waiting) const QUILLO_REALTIME {
    const auto size = sizeOf(bytes.size());
    if (fits(size + waiting.messages * sizeof(LV2_Atom_Event) + waiting.bytes)) {
        return Room::enough;
    }
    return sizeof(LV2_Atom_Sequence) + size <= capacity_ ? Room::full : Room::never;
}

void LV2Output::write(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    write(offset, ids_.midiEvent, bytes);
}

bool LV2Output::tryWriteStateChanged(std::uint32_t offset) QUILLO_REALTIME {
    const LV2_Atom_Object_Body object{0, ids_.stateChanged};
    const bool hasRoom = fits(sizeOf(sizeof(object)));
    if (hasRoom) {
        write(offset, ids_.atomObject, {reinterpret_cast<const std::uint8_t*>(&object), sizeof(object)});
    }
    return hasRoom;
}

/// A buffer that is too short even for a sequence without events gets the atom that is nothing.
void LV2Output::end() QUILLO_REALTIME {
    if (buffer_ == nullptr) {
        return;
    }
    if (capacity_ < sizeof(LV2_Atom_Sequence)) {
        buffer_->atom = {0, 0};
        return;
    }
    buffer_->atom = {static_cast<std::uint32_t>(written_ - sizeof(LV2_Atom)), ids_.atomSequence};
    buffer_->body = {0, 0};
}

/// The last word is cleared before anything is written: the body may leave the end of it open.
void LV2Output::write(std::uint32_t offset, LV2_URID type, std::span<const std::uint8_t> body)
    QUILLO_REALTIME {
    constexpr std::uint64_t clear = 0;
    const auto size = sizeOf(body.size());
    auto* place = reinterpret_cast<std::uint8_t*>(buffer_) + written_;
    LV2_Atom_Event head{};
    head.time.frames = offset;
    head.body = {static_cast<std::uint32_t>(body.size()), type};
    std::memcpy(place + size - sizeof(clear), &clear, sizeof(clear));
    std::memcpy(place, &head, sizeof(head));
    std::memcpy(place + sizeof(head), body.data(), body.size());
    written_ += size;
}

}  // namespace quillo
