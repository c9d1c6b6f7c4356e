// SPDX-License-Identifier: GPL-3.0-or-later
// Blocks of an LV2 host: any bytes as a sequence, in buffers that end where the bytes do.
//
// Of each block: frames (1 byte), the output's room in units of 8 bytes (1), flags (1: one buffer for both
// ways, 2: no input, 4: no output, 8: a pause before), the length of the events (2), the events.
#include <string>
#include <vector>

#include "FuzzInput.hpp"
#include "FuzzRules.hpp"
#include "hosts/lv2/LV2Instance.hpp"
#include "hosts/lv2/LV2Plugin.hpp"

using namespace quillo;
using fuzz::require;

namespace {

/// Numbers from 1 on, in the order in which the plug-in asks for them.
struct Numbers {
    std::vector<std::string> names;
    LV2_URID_Map map{this, [](LV2_URID_Map_Handle self, const char* name) {
                         auto& known = static_cast<Numbers*>(self)->names;
                         known.emplace_back(name);
                         return static_cast<LV2_URID>(known.size());
                     }};
};

/// An instance with rules, by its descriptor.
class Plugin {
public:
    Plugin() {
        const LV2_Feature feature{LV2_URID__map, &numbers_.map};
        const LV2_Feature* features[]{&feature, nullptr};
        handle = descriptor.instantiate(&descriptor, 8000.0, "", features);
        require(handle != nullptr, "an instance is made");
        instance().session().processor().setRules(fuzz::fuzzRules());
        descriptor.activate(handle);
    }
    ~Plugin() { descriptor.cleanup(handle); }
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    [[nodiscard]] LV2Instance& instance() const { return *LV2Instance::of(handle); }

    const LV2_Descriptor& descriptor = *lv2DescriptorOf(0);
    LV2_Handle handle = nullptr;

private:
    Numbers numbers_;
};

/// A sequence of so many bytes behind its atom's header, in an allocation of its own.
class Buffer {
public:
    explicit Buffer(const fuzz::Bytes& body) : bytes_(sizeof(LV2_Atom) + body.size()) {
        std::ranges::copy(body, bytes_.begin() + sizeof(LV2_Atom));
    }

    LV2_Atom_Sequence* sequence(LV2_URID type) {
        const LV2_Atom atom{static_cast<std::uint32_t>(bytes_.size() - sizeof(LV2_Atom)), type};
        std::memcpy(bytes_.data(), &atom, sizeof(atom));
        return reinterpret_cast<LV2_Atom_Sequence*>(bytes_.data());
    }

    [[nodiscard]] std::size_t size() const { return bytes_.size(); }

private:
    fuzz::Bytes bytes_;
};

void requireInOrder(const LV2_Atom_Sequence& sequence, std::size_t capacity, std::uint32_t frames) {
    require(sizeof(LV2_Atom) + sequence.atom.size <= capacity, "no more is written than there is room for");
    if (sequence.atom.size < sizeof(LV2_Atom_Sequence_Body)) {
        return;
    }
    std::int64_t last = 0;
    LV2_ATOM_SEQUENCE_FOREACH(&sequence, event) {
        require(event->time.frames >= last && event->time.frames <= std::max(frames, 1U) - 1,
                "what is sent lies in its block, in order");
        last = event->time.frames;
    }
}

void runBlock(const Plugin& plugin, fuzz::FuzzInput& input) {
    const std::uint32_t frames = input.number<std::uint8_t>();
    const std::size_t room = 8U * input.number<std::uint8_t>();
    const auto flags = input.number<std::uint8_t>();
    Buffer in(input.bytes(input.number<std::uint16_t>()));
    Buffer separate{fuzz::Bytes(room)};
    auto& out = (flags & 1U) != 0 ? in : separate;
    if ((flags & 8U) != 0) {
        plugin.descriptor.deactivate(plugin.handle);
        plugin.descriptor.activate(plugin.handle);
    }
    const auto& ids = plugin.instance().ids();
    auto* events = in.sequence(ids.atomSequence);
    auto* sent = &out == &in ? events : out.sequence(ids.atomChunk);
    plugin.descriptor.connect_port(plugin.handle, 0, (flags & 2U) != 0 ? nullptr : events);
    plugin.descriptor.connect_port(plugin.handle, 1, (flags & 4U) != 0 ? nullptr : sent);
    plugin.descriptor.run(plugin.handle, frames);
    if ((flags & 4U) == 0) {
        requireInOrder(*sent, out.size(), frames);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzInput input(data, size);
    const Plugin plugin;
    while (!input.isEmpty()) {
        runBlock(plugin, input);
    }
    return 0;
}
