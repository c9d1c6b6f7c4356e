// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "hosts/formats/FormatScript.hpp"
#include "hosts/lv2/LV2Sequence.hpp"
#include "hosts/lv2/LV2World.hpp"
#include "realtime/CallCounter.hpp"
#include "rules/Rule.hpp"
#include "session/EditorUnit.hpp"

namespace quillo::test {

/// A host with one instance of the plug-in that was built, made by lilv. What the instance sends is kept with
/// its time since the first frame; an output that a host may not be given fails the test.
class LV2TestHost {
public:
    explicit LV2TestHost(const char* uri = lv2Plain, double sampleRate = scriptSampleRate);
    ~LV2TestHost();
    LV2TestHost(const LV2TestHost&) = delete;
    LV2TestHost& operator=(const LV2TestHost&) = delete;

    /// The same instance, ready to run.
    LV2TestHost& activate();
    void deactivate();

    /// Runs a block with these events.
    void run(std::uint32_t frames, const LV2Sequence& events);
    void run(std::uint32_t frames) { run(frames, LV2Sequence()); }
    /// A block with this one message at its start.
    void run(std::uint32_t frames, const Bytes& message) { run(frames, LV2Sequence().addMIDI(0, message)); }

    void connect(std::uint32_t port, void* data) { descriptor().connect_port(handle(), port, data); }

    /// What has come since the last `take`.
    [[nodiscard]] std::vector<ScriptMessage> take() { return std::exchange(sent_, {}); }

    /// Restores these rules; it must succeed.
    void loadRules(std::vector<Rule> rules);
    [[nodiscard]] LV2_State_Status load(const Bytes& document);
    /// What a host keeps, of any type.
    [[nodiscard]] LV2_State_Status restore(const Bytes& value, LV2_URID type);
    /// The document; it must have been stored as a chunk that a host may copy anywhere.
    [[nodiscard]] Bytes save();

    [[nodiscard]] const LV2_Descriptor& descriptor() const {
        return *::lilv_instance_get_descriptor(instance_.get());
    }
    [[nodiscard]] LV2_Handle handle() const { return ::lilv_instance_get_handle(instance_.get()); }
    [[nodiscard]] LilvInstance* instance() const { return instance_.get(); }
    [[nodiscard]] const LV2World& world() const { return world_; }
    [[nodiscard]] const LV2_State_Interface& state() const;

    /// The unit behind the handle, as the editor reaches it.
    [[nodiscard]] EditorUnit& unit() const;

    /// The size of the output's buffer in the blocks to come.
    std::uint32_t capacity = 65536;

    /// The frames run so far.
    SampleTime now = 0;

    /// What the instance has called in `run` so far that a render thread must not.
    CallCounts calls;

    int stateChanges = 0;            ///< how often the instance told of one
    std::uint32_t bytesWritten = 0;  ///< into the output's buffer in the last block

private:
    struct Free {
        void operator()(LilvInstance* instance) const { ::lilv_instance_free(instance); }
    };

    void prepareOutput();
    void readOutput(std::uint32_t frames);
    void readEvent(const LV2_Atom_Event& event);

    LV2World world_;
    LV2_Feature mapFeature_{LV2_URID__map, &lv2Map()};
    const LV2_Feature* features_[2]{&mapFeature_, nullptr};
    std::unique_ptr<LilvInstance, Free> instance_;
    std::vector<std::uint64_t> output_;
    std::vector<ScriptMessage> sent_;
};

}  // namespace quillo::test
