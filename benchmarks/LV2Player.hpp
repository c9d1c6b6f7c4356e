// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <lilv/lilv.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <lv2/worker/worker.h>

#include "hosts/lv2/LV2Headers.hpp"
#include "hosts/lv2/LV2Sequence.hpp"

namespace quillo::bench {

/// A plug-in of any maker in a host that does as little as a host can: the same block again and again.
class LV2Player {
public:
    /// Throws when the bundle has no such plug-in, or it cannot be made.
    LV2Player(const std::string& bundle, const char* uri);
    ~LV2Player();
    LV2Player(const LV2Player&) = delete;
    LV2Player& operator=(const LV2Player&) = delete;

    /// Restores a state of this one property, a string.
    void restore(const char* key, const std::string& value);

    /// What comes in each block.
    void setEvents(const test::LV2Sequence& events);

    /// The same. Throws when not as many events leave.
    void setEvents(const test::LV2Sequence& events, std::size_t count);

    /// The MIDI messages that left in the last block.
    [[nodiscard]] std::vector<test::Bytes> sent();

    /// Runs a block of 512 frames.
    void run() {
        out().atom = {capacity, chunk_};
        run_(handle_, frames);
    }

private:
    static constexpr std::uint32_t frames = 512;
    static constexpr std::uint32_t capacity = 65536;

    struct FreeWorld {
        void operator()(LilvWorld* world) const { ::lilv_world_free(world); }
    };
    struct FreeInstance {
        void operator()(LilvInstance* instance) const { ::lilv_instance_free(instance); }
    };

    [[nodiscard]] LV2_Atom_Sequence& out() { return *reinterpret_cast<LV2_Atom_Sequence*>(out_.data()); }
    void connectControls(std::uint32_t ports);

    static LV2_Worker_Status schedule(LV2_Worker_Schedule_Handle self, std::uint32_t size, const void* data);
    static LV2_Worker_Status respond(LV2_Worker_Respond_Handle self, std::uint32_t size, const void* data);

    std::unique_ptr<LilvWorld, FreeWorld> world_{::lilv_world_new()};
    LV2_Worker_Schedule schedule_{this, &schedule};
    LV2_Feature mapFeature_{LV2_URID__map, &test::lv2Map()};
    LV2_Feature scheduleFeature_{LV2_WORKER__schedule, &schedule_};
    std::array<const LV2_Feature*, 3> features_{&mapFeature_, &scheduleFeature_, nullptr};
    std::unique_ptr<LilvInstance, FreeInstance> instance_;
    const LV2_Worker_Interface* worker_ = nullptr;

    void (*run_)(LV2_Handle, std::uint32_t) = nullptr;
    LV2_Handle handle_ = nullptr;
    LV2_URID chunk_ = test::lv2Id(LV2_ATOM__Chunk);
    test::LV2Sequence in_;
    std::vector<std::uint64_t> out_ =
        std::vector<std::uint64_t>((capacity + sizeof(LV2_Atom)) / sizeof(std::uint64_t));
    std::vector<float> controls_;
};

}  // namespace quillo::bench
