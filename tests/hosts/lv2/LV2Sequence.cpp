// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2Sequence.hpp"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <deque>
#include <mutex>

namespace quillo::test {

namespace {

constexpr std::size_t word = sizeof(std::uint64_t);

void appendTo(Bytes& bytes, const void* more, std::size_t size) {
    const auto start = bytes.size();
    bytes.resize(start + size);
    if (size > 0) {
        std::memcpy(&bytes[start], more, size);
    }
}

/// The host's numbers, counted from 1.
class Names {
public:
    static Names& ofTheHost() {
        static Names names;
        return names;
    }

    LV2_URID idOf(const std::string& name) {
        const std::lock_guard lock(mutex_);
        const auto found = std::ranges::find(names_, name);
        const auto index = found - names_.begin();
        if (found == names_.end()) {
            names_.push_back(name);
        }
        return static_cast<LV2_URID>(index + 1);
    }

    const char* nameOf(LV2_URID id) {
        const std::lock_guard lock(mutex_);
        return id > 0 && id <= names_.size() ? names_[id - 1].c_str() : nullptr;
    }

private:
    std::mutex mutex_;
    std::deque<std::string> names_;
};

}  // namespace

LV2_URID lv2Id(const std::string& name) {
    return Names::ofTheHost().idOf(name);
}

LV2_URID_Map& lv2Map() {
    static LV2_URID_Map map{
        nullptr, [](LV2_URID_Map_Handle, const char* name) { return Names::ofTheHost().idOf(name); }};
    return map;
}

LV2_URID_Unmap& lv2Unmap() {
    static LV2_URID_Unmap unmap{
        nullptr, [](LV2_URID_Unmap_Handle, LV2_URID id) { return Names::ofTheHost().nameOf(id); }};
    return unmap;
}

LV2Sequence& LV2Sequence::clear() {
    words_.assign(sizeof(LV2_Atom_Sequence) / word, 0);
    atom().atom = {sizeof(LV2_Atom_Sequence_Body), lv2Id(LV2_ATOM__Sequence)};
    return *this;
}

void LV2Sequence::append(const void* bytes, std::size_t size) {
    const auto start = words_.size();
    words_.resize(start + (size + word - 1) / word);
    if (size > 0) {
        std::memcpy(&words_[start], bytes, size);
    }
}

LV2Sequence& LV2Sequence::add(std::int64_t time, LV2_URID type, const Bytes& body, std::uint32_t size) {
    LV2_Atom_Event head{};
    head.time.frames = time;
    head.body = {size, type};
    append(&head, sizeof(head));
    append(body.data(), body.size());
    atom().atom.size = static_cast<std::uint32_t>(words_.size() * word - sizeof(LV2_Atom));
    return *this;
}

LV2Sequence& LV2Sequence::addMIDI(std::int64_t time, const Bytes& bytes) {
    return add(time, lv2Id(LV2_MIDI__MidiEvent), bytes);
}

LV2Sequence& LV2Sequence::addPosition(std::int64_t time, std::optional<double> speed,
                                      std::optional<std::int64_t> frame) {
    LV2ObjectBody object(lv2Id(LV2_TIME__Position));
    object.addNumber(LV2_TIME__beatsPerMinute, LV2_ATOM__Float, 120.0F);
    if (frame) {
        object.addNumber(LV2_TIME__frame, LV2_ATOM__Long, *frame);
    }
    if (speed) {
        object.addNumber(LV2_TIME__speed, LV2_ATOM__Float, static_cast<float>(*speed));
    }
    return add(time, lv2Id(LV2_ATOM__Object), object.bytes());
}

LV2ObjectBody::LV2ObjectBody(LV2_URID type) {
    const LV2_Atom_Object_Body head{0, type};
    appendTo(bytes_, &head, sizeof(head));
}

LV2ObjectBody& LV2ObjectBody::add(LV2_URID key, LV2_URID type, const Bytes& value) {
    bytes_.resize((bytes_.size() + word - 1) / word * word);
    const LV2_Atom_Property_Body property{key, 0, {static_cast<std::uint32_t>(value.size()), type}};
    appendTo(bytes_, &property, offsetof(LV2_Atom_Property_Body, value) + sizeof(LV2_Atom));
    appendTo(bytes_, value.data(), value.size());
    return *this;
}

}  // namespace quillo::test
