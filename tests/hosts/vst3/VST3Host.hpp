// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <pluginterfaces/gui/iplugview.h>
#include <pluginterfaces/vst/ivstaudioprocessor.h>
#include <pluginterfaces/vst/ivstcomponent.h>
#include <pluginterfaces/vst/ivsteditcontroller.h>
#include <pluginterfaces/vst/ivstevents.h>
#include <pluginterfaces/vst/ivsthostapplication.h>
#include <pluginterfaces/vst/ivstmidicontrollers.h>
#include <pluginterfaces/vst/ivstparameterchanges.h>
#include <pluginterfaces/vst/ivstprocesscontext.h>

#include "hosts/formats/FormatScript.hpp"

/// A host of VST3 plug-ins that says what the format has words for and hears what the plug-in says, with no
/// opinion of its own in between.
namespace quillo::test {

/// A host's side of an interface of the format, which lives as long as the host wants.
template <class Interface>
class HostSide : public Interface {
public:
    Steinberg::tresult PLUGIN_API queryInterface(const Steinberg::TUID id, void** object) override {
        const bool known = std::memcmp(id, Interface::iid, sizeof(Steinberg::TUID)) == 0 ||
                           std::memcmp(id, Steinberg::FUnknown::iid, sizeof(Steinberg::TUID)) == 0;
        *object = known ? this : nullptr;
        return known ? Steinberg::kResultOk : Steinberg::kNoInterface;
    }
    Steinberg::uint32 PLUGIN_API addRef() override { return 1; }
    Steinberg::uint32 PLUGIN_API release() override { return 1; }
};

/// A list of events with room for many, made once.
class VST3Events final : public HostSide<Steinberg::Vst::IEventList> {
public:
    explicit VST3Events(std::size_t room = 1U << 16U) { events_.reserve(room); }

    Steinberg::int32 PLUGIN_API getEventCount() override;
    Steinberg::tresult PLUGIN_API getEvent(Steinberg::int32 index, Steinberg::Vst::Event& event) override;
    Steinberg::tresult PLUGIN_API addEvent(Steinberg::Vst::Event& event) override;

    void clear() { events_.clear(); }
    [[nodiscard]] const std::vector<Steinberg::Vst::Event>& events() const { return events_; }

private:
    std::vector<Steinberg::Vst::Event> events_;
};

/// The changes of one parameter in a block.
class VST3ParameterQueue final : public HostSide<Steinberg::Vst::IParamValueQueue> {
public:
    explicit VST3ParameterQueue(Steinberg::Vst::ParamID id) : id_(id) {}

    Steinberg::Vst::ParamID PLUGIN_API getParameterId() override { return id_; }
    Steinberg::int32 PLUGIN_API getPointCount() override;
    Steinberg::tresult PLUGIN_API getPoint(Steinberg::int32 index, Steinberg::int32& offset,
                                           Steinberg::Vst::ParamValue& value) override;
    Steinberg::tresult PLUGIN_API addPoint(Steinberg::int32 offset, Steinberg::Vst::ParamValue value,
                                           Steinberg::int32& index) override;

private:
    Steinberg::Vst::ParamID id_;
    std::vector<std::pair<Steinberg::int32, Steinberg::Vst::ParamValue>> points_;
};

/// The changes of all parameters in a block.
class VST3ParameterChanges final : public HostSide<Steinberg::Vst::IParameterChanges> {
public:
    Steinberg::int32 PLUGIN_API getParameterCount() override;
    Steinberg::Vst::IParamValueQueue* PLUGIN_API getParameterData(Steinberg::int32 index) override;
    Steinberg::Vst::IParamValueQueue* PLUGIN_API addParameterData(const Steinberg::Vst::ParamID& id,
                                                                  Steinberg::int32& index) override;

    void clear() { queues_.clear(); }

private:
    std::deque<VST3ParameterQueue> queues_;
};

/// What the plug-in tells its host of edits. Asked for under two names.
class VST3Handler final : public HostSide<Steinberg::Vst::IComponentHandler>,
                          public HostSide<Steinberg::Vst::IComponentHandler2> {
public:
    Steinberg::tresult PLUGIN_API queryInterface(const Steinberg::TUID id, void** object) override;
    Steinberg::uint32 PLUGIN_API addRef() override { return 1; }
    Steinberg::uint32 PLUGIN_API release() override { return 1; }

    Steinberg::tresult PLUGIN_API beginEdit(Steinberg::Vst::ParamID id) override;
    Steinberg::tresult PLUGIN_API performEdit(Steinberg::Vst::ParamID id,
                                              Steinberg::Vst::ParamValue value) override;
    Steinberg::tresult PLUGIN_API endEdit(Steinberg::Vst::ParamID id) override;
    Steinberg::tresult PLUGIN_API restartComponent(Steinberg::int32 flags) override;
    Steinberg::tresult PLUGIN_API setDirty(Steinberg::TBool state) override;
    Steinberg::tresult PLUGIN_API requestOpenEditor(Steinberg::FIDString name) override;
    Steinberg::tresult PLUGIN_API startGroupEdit() override;
    Steinberg::tresult PLUGIN_API finishGroupEdit() override;

    std::atomic<int> timesMarkedChanged{0};
};

/// What a host gives in a block.
struct VST3Input {
    VST3Events events{1U << 16U};
    VST3ParameterChanges parameters;
    std::deque<Bytes> systemExclusive;  ///< what the events point at

    void clear();
};

/// One instance of the built plug-in, made as hosts make one: component and controller, connected.
class VST3Instance {
public:
    VST3Instance();
    ~VST3Instance();
    VST3Instance(const VST3Instance&) = delete;
    VST3Instance& operator=(const VST3Instance&) = delete;

    void activate(double sampleRate = scriptSampleRate, std::int32_t longestBlock = 8192);
    void deactivate();

    [[nodiscard]] Steinberg::tresult setState(std::span<const std::uint8_t> bytes);
    [[nodiscard]] Steinberg::tresult setState(Steinberg::IBStream& stream) {
        return component_->setState(&stream);
    }
    [[nodiscard]] Steinberg::tresult getState(Steinberg::IBStream& stream) {
        return component_->getState(&stream);
    }
    [[nodiscard]] Bytes state();

    /// Gives a message, as the format has it: notes, poly pressure and system exclusive as events,
    /// controllers, channel pressure and pitch bend as parameters, program change and quarter frame as the
    /// events that are meant for the other direction. False when the format has no way for it.
    bool give(VST3Input& input, std::uint32_t offset, std::span<const std::uint8_t> bytes);

    /// Processes one block; without frames it has no audio either, and only hands over what is given. The
    /// audio that goes in stands in `audio`, and so does what comes out.
    Steinberg::tresult process(std::uint32_t frames, VST3Input& input,
                               const Steinberg::Vst::ProcessContext* context);

    /// The messages of the last block, by their offsets.
    [[nodiscard]] std::vector<ScriptMessage> sent() const;
    [[nodiscard]] const std::vector<Steinberg::Vst::Event>& sentEvents() const { return output_.events(); }

    [[nodiscard]] Steinberg::Vst::IComponent& component() { return *component_; }
    [[nodiscard]] Steinberg::Vst::IAudioProcessor& processor() { return *processor_; }
    [[nodiscard]] Steinberg::Vst::IEditController& controller() { return *controller_; }
    [[nodiscard]] VST3Handler& handler() { return handler_; }

    /// The parameter that a controller is mapped to.
    [[nodiscard]] Steinberg::Vst::ParamID parameterOf(std::int16_t channel, std::int16_t controller);

    std::vector<float> audio[2];
    bool takesEvents = true;  ///< whether the plug-in is given a list for what it sends

private:
    void connect(bool connected);

    VST3Handler handler_;
    Steinberg::Vst::IComponent* component_ = nullptr;
    Steinberg::Vst::IAudioProcessor* processor_ = nullptr;
    Steinberg::Vst::IEditController* controller_ = nullptr;
    Steinberg::Vst::IMidiMapping* mapping_ = nullptr;
    VST3Events output_;
    bool active_ = false;
};

/// The plug-in's factory, of the module that is loaded once and kept.
[[nodiscard]] Steinberg::IPluginFactory3& vst3Factory();

/// The message that an event stands for. Throws when it stands for none.
[[nodiscard]] Bytes messageOf(const Steinberg::Vst::Event& event);

/// What the plug-in sends. Blocks end where the transport changes, since the format tells it once a block.
[[nodiscard]] std::vector<ScriptMessage> playedByThePlugIn(const FormatScript& script,
                                                           const std::vector<std::uint32_t>& blocks);

}  // namespace quillo::test
