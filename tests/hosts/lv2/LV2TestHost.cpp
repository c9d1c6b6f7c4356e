// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2TestHost.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include "hosts/lv2/LV2InstanceAccess.hpp"
#include "persistence/PluginData.hpp"

namespace quillo::test {

namespace {

constexpr const char* stateName = "urn:midi-quillo:lv2#midi-quillo-state";
constexpr std::uint8_t untouched = 0xA5;
constexpr std::size_t guardSize = 64;

/// Whether nothing was written there. One call for thousands of bytes in every block: a test's loops are not
/// optimised.
bool isUntouched(const std::uint8_t* begin, std::size_t size) {
    return size == 0 || (*begin == untouched && std::memcmp(begin, begin + 1, size - 1) == 0);
}

/// What a host keeps of a state.
struct Kept {
    Bytes value;
    LV2_URID type = 0;
    std::uint32_t flags = 0;

    static LV2_State_Status store(LV2_State_Handle handle, std::uint32_t key, const void* value,
                                  std::size_t size, std::uint32_t type, std::uint32_t flags) {
        EXPECT_EQ(key, lv2Id(stateName));
        const auto* bytes = static_cast<const std::uint8_t*>(value);
        *static_cast<Kept*>(handle) = {{bytes, bytes + size}, type, flags};
        return LV2_STATE_SUCCESS;
    }

    static const void* retrieve(LV2_State_Handle handle, std::uint32_t key, std::size_t* size,
                                std::uint32_t* type, std::uint32_t* flags) {
        if (key != lv2Id(stateName)) {
            return nullptr;
        }
        const auto& kept = *static_cast<Kept*>(handle);
        *size = kept.value.size();
        *type = kept.type;
        *flags = kept.flags;
        return kept.value.empty() ? "" : static_cast<const void*>(kept.value.data());
    }
};

}  // namespace

LV2TestHost::LV2TestHost(const char* uri, double sampleRate)
    : instance_(::lilv_plugin_instantiate(world_.plugin(uri), sampleRate, features_)) {
    if (!instance_) {
        throw std::runtime_error(std::string("no instance of ") + uri);
    }
}

LV2TestHost::~LV2TestHost() = default;

LV2TestHost& LV2TestHost::activate() {
    descriptor().activate(handle());
    return *this;
}

void LV2TestHost::deactivate() {
    descriptor().deactivate(handle());
}

void LV2TestHost::run(std::uint32_t frames, const LV2Sequence& events) {
    auto in = events;
    prepareOutput();
    connect(0, in.atom().atom.type == 0 ? nullptr : &in.atom());
    connect(1, output_.data());
    {
        const CallCounter::Scope scope;
        descriptor().run(handle(), frames);
        calls += scope.counts();
    }
    readOutput(frames);
    now += frames;
}

void LV2TestHost::prepareOutput() {
    output_.resize((std::max<std::size_t>(capacity, sizeof(LV2_Atom)) + guardSize) / sizeof(std::uint64_t));
    auto* bytes = reinterpret_cast<std::uint8_t*>(output_.data());
    std::fill_n(bytes, output_.size() * sizeof(std::uint64_t), untouched);
    reinterpret_cast<LV2_Atom*>(bytes)[0] = {capacity, lv2Id(LV2_ATOM__Chunk)};
}

/// Nothing may be written behind the size that the buffer gave, nor behind what the sequence says it is.
void LV2TestHost::readOutput(std::uint32_t frames) {
    const auto& sequence = *reinterpret_cast<const LV2_Atom_Sequence*>(output_.data());
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(output_.data());
    bytesWritten = static_cast<std::uint32_t>(sizeof(LV2_Atom) + sequence.atom.size);
    ASSERT_LE(bytesWritten, std::max<std::uint32_t>(capacity, sizeof(LV2_Atom)));
    EXPECT_TRUE(isUntouched(bytes + bytesWritten, output_.size() * sizeof(std::uint64_t) - bytesWritten));
    if (sequence.atom.size == 0) {
        EXPECT_EQ(sequence.atom.type, 0U);
        return;
    }
    ASSERT_EQ(sequence.atom.type, lv2Id(LV2_ATOM__Sequence));
    EXPECT_EQ(sequence.body.unit, 0U);
    std::int64_t last = 0;
    const auto* end = bytes + bytesWritten;
    for (const auto* at = bytes + sizeof(LV2_Atom_Sequence); at < end;) {
        const auto& event = *reinterpret_cast<const LV2_Atom_Event*>(at);
        ASSERT_LE(sizeof(event), static_cast<std::size_t>(end - at));
        const auto size = sizeof(event) + ::lv2_atom_pad_size(event.body.size);
        ASSERT_LE(size, static_cast<std::size_t>(end - at)) << "an event ends behind the sequence";
        EXPECT_GE(event.time.frames, last);
        EXPECT_LT(event.time.frames, std::max<std::int64_t>(frames, 1));
        last = event.time.frames;
        readEvent(event);
        EXPECT_TRUE(std::all_of(at + sizeof(event) + event.body.size, at + size,
                                [](auto byte) { return byte == 0; }));
        at += size;
    }
}

void LV2TestHost::readEvent(const LV2_Atom_Event& event) {
    const auto* body = reinterpret_cast<const std::uint8_t*>(&event + 1);
    if (event.body.type == lv2Id(LV2_ATOM__Object)) {
        const auto& object = *reinterpret_cast<const LV2_Atom_Object_Body*>(body);
        EXPECT_EQ(event.body.size, sizeof(object));
        EXPECT_EQ(object.id, 0U);
        EXPECT_EQ(object.otype, lv2Id(LV2_STATE__StateChanged));
        ++stateChanges;
        return;
    }
    EXPECT_EQ(event.body.type, lv2Id(LV2_MIDI__MidiEvent));
    sent_.push_back({now + event.time.frames, {body, body + event.body.size}});
}

const LV2_State_Interface& LV2TestHost::state() const {
    return *static_cast<const LV2_State_Interface*>(descriptor().extension_data(LV2_STATE__interface));
}

EditorUnit& LV2TestHost::unit() const {
    const auto* instance = LV2InstanceAccess::of(handle());
    if (instance == nullptr || !instance->isOfThisVersion()) {
        throw std::runtime_error("the handle is no instance of this version");
    }
    return *instance->unit;
}

void LV2TestHost::loadRules(std::vector<Rule> rules) {
    ASSERT_EQ(load(PluginData{std::move(rules)}.write()), LV2_STATE_SUCCESS);
}

LV2_State_Status LV2TestHost::load(const Bytes& document) {
    return restore(document, lv2Id(LV2_ATOM__Chunk));
}

LV2_State_Status LV2TestHost::restore(const Bytes& value, LV2_URID type) {
    Kept kept{value, type, LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE};
    return state().restore(handle(), &Kept::retrieve, &kept, 0, features_);
}

Bytes LV2TestHost::save() {
    Kept kept;
    EXPECT_EQ(
        state().save(handle(), &Kept::store, &kept, LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE, features_),
        LV2_STATE_SUCCESS);
    EXPECT_EQ(kept.type, lv2Id(LV2_ATOM__Chunk));
    EXPECT_EQ(kept.flags, std::uint32_t{LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE});
    return kept.value;
}

}  // namespace quillo::test
