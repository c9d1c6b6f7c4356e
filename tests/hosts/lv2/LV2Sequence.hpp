// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "hosts/lv2/LV2Headers.hpp"
#include "support/OutputRecorder.hpp"

namespace quillo::test {

/// The host's number for a name; the same one for all instances. [any]
[[nodiscard]] LV2_URID lv2Id(const std::string& name);

/// The host's map and its way back, as features.
[[nodiscard]] LV2_URID_Map& lv2Map();
[[nodiscard]] LV2_URID_Unmap& lv2Unmap();

/// The events of a block as a host writes them, in the order in which they were added.
class LV2Sequence {
public:
    LV2Sequence() { clear(); }

    /// Without events again.
    LV2Sequence& clear();

    /// An event whose body has this type and these bytes; `size` is what it says of itself.
    LV2Sequence& add(std::int64_t time, LV2_URID type, const Bytes& body, std::uint32_t size);
    LV2Sequence& add(std::int64_t time, LV2_URID type, const Bytes& body) {
        return add(time, type, body, static_cast<std::uint32_t>(body.size()));
    }

    LV2Sequence& addMIDI(std::int64_t time, const Bytes& bytes);

    /// A position that tells what is given.
    LV2Sequence& addPosition(std::int64_t time, std::optional<double> speed,
                             std::optional<std::int64_t> frame);

    /// What the sequence says of itself; may be made to lie.
    [[nodiscard]] LV2_Atom_Sequence& atom() { return *reinterpret_cast<LV2_Atom_Sequence*>(words_.data()); }
    [[nodiscard]] const LV2_Atom_Sequence* data() const {
        return reinterpret_cast<const LV2_Atom_Sequence*>(words_.data());
    }

private:
    void append(const void* bytes, std::size_t size);

    std::vector<std::uint64_t> words_;
};

/// The body of an object, as bytes, with its properties one by one.
class LV2ObjectBody {
public:
    explicit LV2ObjectBody(LV2_URID type);

    LV2ObjectBody& add(LV2_URID key, LV2_URID type, const Bytes& value);

    template <class Number>
    LV2ObjectBody& addNumber(const char* key, const char* type, Number number) {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(&number);
        return add(lv2Id(key), lv2Id(type), {bytes, bytes + sizeof(Number)});
    }

    [[nodiscard]] const Bytes& bytes() const { return bytes_; }

private:
    Bytes bytes_;
};

}  // namespace quillo::test
