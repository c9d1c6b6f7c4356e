// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/VST3Host.hpp"

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>

#include <public.sdk/source/common/memorystream.h>
#include <public.sdk/source/vst/hosting/hostclasses.h>

namespace quillo::test {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

/// What the format calls the message with so many bytes behind its status.
constexpr int highest = 127;
constexpr int highestBend = 16383;

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(what);
}

void require(tresult result, const char* what) {
    if (result != kResultOk) {
        fail(std::string("the plug-in refuses ") + what + ": " + std::to_string(result));
    }
}

FUnknown& hostApplication() {
    static HostApplication application;
    return application;
}

template <class Interface>
Interface* asked(FUnknown& object, const char* name) {
    void* found = nullptr;
    if (object.queryInterface(Interface::iid, &found) != kResultOk || found == nullptr) {
        fail(std::string("the plug-in has no ") + name);
    }
    return static_cast<Interface*>(found);
}

template <class Interface>
Interface* made(const TUID classId, const char* name) {
    void* object = nullptr;
    if (vst3Factory().createInstance(classId, Interface::iid, &object) != kResultOk || object == nullptr) {
        fail(std::string("the factory makes no ") + name);
    }
    return static_cast<Interface*>(object);
}

PClassInfo componentClass() {
    for (int32 index = 0; index < vst3Factory().countClasses(); ++index) {
        PClassInfo info;
        if (vst3Factory().getClassInfo(index, &info) == kResultOk &&
            std::strcmp(info.category, kVstAudioEffectClass) == 0) {
            return info;
        }
    }
    fail("the factory has no audio effect");
}

float fraction(std::uint8_t value) {
    return static_cast<float>(value) / static_cast<float>(highest);
}

std::uint8_t whole(float value) {
    return static_cast<std::uint8_t>(std::lround(value * static_cast<float>(highest)));
}

std::uint8_t status(int kind, int channel) {
    return static_cast<std::uint8_t>(kind | channel);
}

std::uint8_t low(int8 value) {
    return static_cast<std::uint8_t>(value);
}

Bytes messageOf(const LegacyMIDICCOutEvent& event) {
    switch (event.controlNumber) {
    case kAfterTouch: return {status(0xD0, event.channel), low(event.value)};
    case kPitchBend: return {status(0xE0, event.channel), low(event.value), low(event.value2)};
    case kCtrlProgramChange: return {status(0xC0, event.channel), low(event.value)};
    case kCtrlPolyPressure: return {status(0xA0, event.channel), low(event.value), low(event.value2)};
    case kCtrlQuarterFrame: return {0xF1, low(event.value)};
    default: break;
    }
    if (event.controlNumber > highest) {
        fail("an event of controller " + std::to_string(event.controlNumber));
    }
    return {status(0xB0, event.channel), event.controlNumber, low(event.value)};
}

/// Whether the format has an event for the message, or one for the other direction.
bool asEvent(std::span<const std::uint8_t> bytes, Event& event) {
    const auto channel = static_cast<int16>(bytes[0] & 0x0F);
    const auto legacy = [&](uint8 controller, int8 value) {
        event.type = Event::kLegacyMIDICCOutEvent;
        event.midiCCOut = {controller, static_cast<int8>(bytes[0] < 0xF0 ? channel : 0), value, 0};
    };
    switch (bytes[0] & 0xF0) {
    case 0x90:
        event.type = Event::kNoteOnEvent;
        event.noteOn = {channel, bytes[1], 0.0F, fraction(bytes[2]), 0, -1};
        return true;
    case 0x80:
        event.type = Event::kNoteOffEvent;
        event.noteOff = {channel, bytes[1], fraction(bytes[2]), -1, 0.0F};
        return true;
    case 0xA0:
        event.type = Event::kPolyPressureEvent;
        event.polyPressure = {channel, bytes[1], fraction(bytes[2]), -1};
        return true;
    case 0xC0: legacy(kCtrlProgramChange, static_cast<int8>(bytes[1])); return true;
    default: break;
    }
    if (bytes[0] == 0xF1) {
        legacy(kCtrlQuarterFrame, static_cast<int8>(bytes[1]));
        return true;
    }
    return false;
}

/// The blocks, cut where the transport changes.
std::vector<std::uint32_t> cutAtTheTransport(const FormatScript& script,
                                             const std::vector<std::uint32_t>& blocks) {
    std::vector<std::uint32_t> cut;
    SampleTime start = 0;
    for (const auto frames : blocks) {
        const auto end = start + frames;
        for (const auto& told : script.transport) {
            if (told.time > start && told.time < end) {
                cut.push_back(static_cast<std::uint32_t>(told.time - start));
                start = told.time;
            }
        }
        cut.push_back(static_cast<std::uint32_t>(end - start));
        start = end;
    }
    return cut;
}

}  // namespace

int32 VST3Events::getEventCount() {
    return static_cast<int32>(events_.size());
}

tresult VST3Events::getEvent(int32 index, Event& event) {
    event = events_.at(static_cast<std::size_t>(index));
    return kResultOk;
}

tresult VST3Events::addEvent(Event& event) {
    events_.push_back(event);
    return kResultOk;
}

int32 VST3ParameterQueue::getPointCount() {
    return static_cast<int32>(points_.size());
}

tresult VST3ParameterQueue::getPoint(int32 index, int32& offset, ParamValue& value) {
    std::tie(offset, value) = points_.at(static_cast<std::size_t>(index));
    return kResultOk;
}

tresult VST3ParameterQueue::addPoint(int32 offset, ParamValue value, int32& index) {
    index = getPointCount();
    points_.emplace_back(offset, value);
    return kResultOk;
}

int32 VST3ParameterChanges::getParameterCount() {
    return static_cast<int32>(queues_.size());
}

IParamValueQueue* VST3ParameterChanges::getParameterData(int32 index) {
    return &queues_.at(static_cast<std::size_t>(index));
}

IParamValueQueue* VST3ParameterChanges::addParameterData(const ParamID& id, int32& index) {
    const auto found =
        std::ranges::find_if(queues_, [&id](auto& queue) { return queue.getParameterId() == id; });
    index = static_cast<int32>(found - queues_.begin());
    return found != queues_.end() ? &*found : &queues_.emplace_back(id);
}

tresult VST3Handler::queryInterface(const TUID id, void** object) {
    if (HostSide<IComponentHandler2>::queryInterface(id, object) == kResultOk) {
        return kResultOk;
    }
    return HostSide<IComponentHandler>::queryInterface(id, object);
}

tresult VST3Handler::beginEdit(ParamID /*id*/) {
    return kResultOk;
}

tresult VST3Handler::performEdit(ParamID /*id*/, ParamValue /*value*/) {
    return kResultOk;
}

tresult VST3Handler::endEdit(ParamID /*id*/) {
    return kResultOk;
}

tresult VST3Handler::restartComponent(int32 /*flags*/) {
    return kResultOk;
}

tresult VST3Handler::setDirty(TBool /*state*/) {
    ++timesMarkedChanged;
    return kResultOk;
}

tresult VST3Handler::requestOpenEditor(FIDString /*name*/) {
    return kNotImplemented;
}

tresult VST3Handler::startGroupEdit() {
    return kResultOk;
}

tresult VST3Handler::finishGroupEdit() {
    return kResultOk;
}

void VST3Input::clear() {
    events.clear();
    parameters.clear();
    systemExclusive.clear();
}

VST3Instance::VST3Instance() {
    component_ = made<IComponent>(componentClass().cid, "component");
    require(component_->initialize(&hostApplication()), "to be initialised");
    processor_ = asked<IAudioProcessor>(*component_, "processor");
    TUID controllerId{};
    require(component_->getControllerClassId(controllerId), "to name its controller");
    controller_ = made<IEditController>(controllerId, "controller");
    require(controller_->initialize(&hostApplication()), "to initialise its controller");
    controller_->setComponentHandler(&handler_);
    connect(true);
    mapping_ = asked<IMidiMapping>(*controller_, "MIDI mapping");
}

VST3Instance::~VST3Instance() {
    deactivate();
    connect(false);
    mapping_->release();
    controller_->terminate();
    controller_->release();
    processor_->release();
    component_->terminate();
    component_->release();
}

void VST3Instance::connect(bool connected) {
    auto* component = asked<IConnectionPoint>(*component_, "connection");
    auto* controller = asked<IConnectionPoint>(*controller_, "connection");
    for (auto [one, other] : {std::pair(component, controller), std::pair(controller, component)}) {
        static_cast<void>(connected ? one->connect(other) : one->disconnect(other));
    }
    component->release();
    controller->release();
}

void VST3Instance::activate(double sampleRate, std::int32_t longestBlock) {
    for (auto& channel : audio) {
        channel.assign(static_cast<std::size_t>(longestBlock), 0.0F);
    }
    for (const auto media : {kAudio, kEvent}) {
        for (const auto direction : {kInput, kOutput}) {
            require(component_->activateBus(media, direction, 0, 1), "to activate a bus");
        }
    }
    ProcessSetup setup{kRealtime, kSample32, longestBlock, sampleRate};
    require(processor_->setupProcessing(setup), "to set up processing");
    require(component_->setActive(1), "to be activated");
    require(processor_->setProcessing(1), "to process");
    active_ = true;
}

void VST3Instance::deactivate() {
    if (std::exchange(active_, false)) {
        require(processor_->setProcessing(0), "to stop processing");
        require(component_->setActive(0), "to be deactivated");
    }
}

tresult VST3Instance::setState(std::span<const std::uint8_t> bytes) {
    Bytes copy(bytes.begin(), bytes.end());
    MemoryStream stream(copy.data(), static_cast<TSize>(copy.size()));
    return component_->setState(&stream);
}

Bytes VST3Instance::state() {
    MemoryStream stream;
    require(component_->getState(&stream), "to save its state");
    const auto* data = reinterpret_cast<const std::uint8_t*>(stream.getData());
    return {data, data + stream.getSize()};
}

ParamID VST3Instance::parameterOf(std::int16_t channel, std::int16_t controller) {
    ParamID id = kNoParamId;
    require(mapping_->getMidiControllerAssignment(0, channel, controller, id), "to map a controller");
    return id;
}

bool VST3Instance::give(VST3Input& input, std::uint32_t offset, std::span<const std::uint8_t> bytes) {
    const auto at = static_cast<int32>(offset);
    const auto channel = static_cast<std::int16_t>(bytes[0] & 0x0F);
    const auto change = [&](std::int16_t controller, int value, int greatest) {
        int32 index = 0;
        auto* queue = input.parameters.addParameterData(parameterOf(channel, controller), index);
        queue->addPoint(at, static_cast<double>(value) / greatest, index);
    };
    switch (bytes[0] & 0xF0) {
    case 0xB0: change(bytes[1], bytes[2], highest); return true;
    case 0xD0: change(kAfterTouch, bytes[1], highest); return true;
    case 0xE0: change(kPitchBend, bytes[1] | (bytes[2] << 7), highestBend); return true;
    default: break;
    }
    Event event{};
    event.sampleOffset = at;
    if (bytes[0] == 0xF0) {
        const auto& kept = input.systemExclusive.emplace_back(bytes.begin() + 1, bytes.end() - 1);
        event.type = Event::kDataEvent;
        event.data = {static_cast<uint32>(kept.size()), DataEvent::kMidiSysEx, kept.data()};
    } else if (!asEvent(bytes, event)) {
        return false;
    }
    input.events.addEvent(event);
    return true;
}

tresult VST3Instance::process(std::uint32_t frames, VST3Input& input, const ProcessContext* context) {
    std::array<float*, 2> channels{audio[0].data(), audio[1].data()};
    AudioBusBuffers in;
    in.numChannels = 2;
    in.channelBuffers32 = channels.data();
    AudioBusBuffers out = in;
    ProcessData data;
    data.processMode = kRealtime;
    data.symbolicSampleSize = kSample32;
    data.numSamples = static_cast<int32>(frames);
    data.numInputs = frames > 0 ? 1 : 0;
    data.numOutputs = data.numInputs;
    data.inputs = &in;
    data.outputs = &out;
    data.inputEvents = &input.events;
    data.inputParameterChanges = &input.parameters;
    data.outputEvents = takesEvents ? &output_ : nullptr;
    data.processContext = const_cast<ProcessContext*>(context);
    output_.clear();
    return processor_->process(data);
}

std::vector<ScriptMessage> VST3Instance::sent() const {
    std::vector<ScriptMessage> messages;
    for (const auto& event : output_.events()) {
        messages.push_back({event.sampleOffset, messageOf(event)});
    }
    return messages;
}

IPluginFactory3& vst3Factory() {
    static IPluginFactory3* const factory = [] {
        void* const module = dlopen(QUILLO_VST3_MODULE, RTLD_NOW | RTLD_LOCAL);
        if (module == nullptr) {
            fail(dlerror());
        }
        const auto enter = reinterpret_cast<bool (*)(void*)>(dlsym(module, "ModuleEntry"));
        const auto get = reinterpret_cast<GetFactoryProc>(dlsym(module, "GetPluginFactory"));
        if (enter == nullptr || get == nullptr || !enter(module)) {
            fail("the module is no VST3 module");
        }
        return asked<IPluginFactory3>(*get(), "factory of the third kind");
    }();
    return *factory;
}

Bytes messageOf(const Event& event) {
    switch (event.type) {
    case Event::kNoteOnEvent:
        return {status(0x90, event.noteOn.channel), static_cast<std::uint8_t>(event.noteOn.pitch),
                whole(event.noteOn.velocity)};
    case Event::kNoteOffEvent:
        return {status(0x80, event.noteOff.channel), static_cast<std::uint8_t>(event.noteOff.pitch),
                whole(event.noteOff.velocity)};
    case Event::kPolyPressureEvent:
        return {status(0xA0, event.polyPressure.channel), static_cast<std::uint8_t>(event.polyPressure.pitch),
                whole(event.polyPressure.pressure)};
    case Event::kLegacyMIDICCOutEvent: return messageOf(event.midiCCOut);
    case Event::kDataEvent: {
        Bytes bytes{0xF0};
        bytes.insert(bytes.end(), event.data.bytes, event.data.bytes + event.data.size);
        bytes.push_back(0xF7);
        return bytes;
    }
    default: fail("an event of type " + std::to_string(event.type));
    }
}

std::vector<ScriptMessage> playedByThePlugIn(const FormatScript& script,
                                             const std::vector<std::uint32_t>& blocks) {
    VST3Instance plugIn;
    require(plugIn.setState(script.state), "the script's state");
    plugIn.activate();
    std::vector<ScriptMessage> sent;
    VST3Input input;
    ProcessContext context{};
    context.sampleRate = scriptSampleRate;
    auto told = script.transport.begin();
    auto message = script.messages.begin();
    SampleTime start = 0;
    for (const auto frames : cutAtTheTransport(script, blocks)) {
        input.clear();
        for (; told != script.transport.end() && told->time == start; ++told) {
            context.state = told->moves ? ProcessContext::kPlaying : 0;
            context.projectTimeSamples = static_cast<TSamples>(told->position);
        }
        for (; message != script.messages.end() && message->time < start + frames; ++message) {
            if (!plugIn.give(input, static_cast<std::uint32_t>(message->time - start), message->bytes)) {
                fail("the format has no way for a message of the script");
            }
        }
        require(plugIn.process(frames, input, &context), "to process");
        for (const auto& [offset, bytes] : plugIn.sent()) {
            sent.push_back({start + offset, bytes});
        }
        start += frames;
        context.projectTimeSamples += (context.state & ProcessContext::kPlaying) != 0 ? frames : 0;
    }
    return sent;
}

}  // namespace quillo::test
