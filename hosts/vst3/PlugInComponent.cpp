// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/PlugInComponent.hpp"

#include <algorithm>
#include <array>
#include <exception>
#include <limits>
#include <optional>
#include <vector>

#include <public.sdk/source/common/memorystream.h>

#include "hosts/vst3/EventLists.hpp"
#include "hosts/vst3/StateChunk.hpp"

namespace quillo {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

template <class Interface>
IPtr<Interface> asked(FUnknown& object) {
    void* found = nullptr;
    const bool answers = object.queryInterface(Interface::iid, &found) == kResultOk;
    return answers ? owned(static_cast<Interface*>(found)) : nullptr;
}

/// All that the host has kept, or a byte more than can be restored; nothing when it cannot be read.
std::optional<std::vector<std::uint8_t>> readAll(IBStream& stream) {
    std::vector<std::uint8_t> bytes;
    std::array<std::uint8_t, 4096> piece{};
    if (stream.seek(0, IBStream::kIBSeekSet, nullptr) != kResultOk) {
        return std::nullopt;
    }
    for (int32 length = 0;
         stream.read(piece.data(), int32{piece.size()}, &length) == kResultOk && length > 0;) {
        if (length > int32{piece.size()}) {
            return std::nullopt;
        }
        bytes.insert(bytes.end(), piece.begin(), piece.begin() + length);
        if (bytes.size() > Session::longestDocument) {
            break;
        }
    }
    return bytes;
}

/// Whether a stream has taken all of it, in whatever pieces. One that does not say how much it took took what
/// it was given.
bool writeAll(IBStream& stream, const char* data, TSize size) {
    while (size > 0) {
        const auto offered = static_cast<int32>(std::min<TSize>(size, std::numeric_limits<int32>::max()));
        auto taken = offered;
        // The interface has no constant data.
        if (stream.write(const_cast<char*>(data), offered, &taken) != kResultOk || taken < 1 ||
            taken > offered) {
            return false;
        }
        data += taken;
        size -= taken;
    }
    return true;
}

}  // namespace

IPtr<PlugInComponent> PlugInComponent::around(FUnknown& made) {
    const auto component = asked<IComponent>(made);
    const auto processor = asked<IAudioProcessor>(made);
    void* quillo = nullptr;
    if (!component || !processor || made.queryInterface(QuilloProcessor::interfaceId, &quillo) != kResultOk) {
        return nullptr;
    }
    return owned(new PlugInComponent(component, processor, *static_cast<QuilloProcessor*>(quillo)));
}

PlugInComponent::PlugInComponent(const IPtr<IComponent>& component, const IPtr<IAudioProcessor>& processor,
                                 QuilloProcessor& quillo)
    : component_(component), processor_(processor), quillo_(quillo) {}

tresult PlugInComponent::queryInterface(const TUID id, void** object) {
    const auto is = [id](const FUID& own) { return FUnknownPrivate::iidEqual(id, own); };
    if (is(IComponent::iid) || is(IPluginBase::iid) || is(FUnknown::iid)) {
        *object = static_cast<IComponent*>(this);
    } else if (is(IAudioProcessor::iid)) {
        *object = static_cast<IAudioProcessor*>(this);
    } else {
        return component_->queryInterface(id, object);
    }
    addRef();
    return kResultOk;
}

uint32 PlugInComponent::addRef() {
    return ++references_;
}

uint32 PlugInComponent::release() {
    const auto left = --references_;
    if (left == 0) {
        delete this;
    }
    return left;
}

/// Where memory ends in the wrapper it keeps buffers that it has freed: nothing is rendered any more.
template <class Call>
tresult PlugInComponent::inTheWrapper(const Call& call) {
    if (longestBlock_ == afterAFailure) {
        return kResultFalse;
    }
    try {
        return call();
    } catch (const std::exception&) {
        longestBlock_ = afterAFailure;
        return kResultFalse;
    }
}

/// The wrapper believes what it reads, and cannot say what became of it: so it is given nothing but whether
/// the plug-in is bypassed, and that only with rules that are taken.
tresult PlugInComponent::setState(IBStream* state) try {
    if (state == nullptr) {
        return kInvalidArgument;
    }
    const auto bytes = readAll(*state);
    if (!bytes) {
        quillo_.session().tellUser("The saved rules cannot be restored: the host cannot read them.");
        return kResultFalse;
    }
    const auto chunk = StateChunk::of(*bytes);
    if (bytes->empty() || quillo_.session().restore(chunk.document)) {
        return kResultFalse;
    }
    if (!chunk.bypass.empty()) {
        // The interface has no constant data.
        MemoryStream bypass(const_cast<std::uint8_t*>(chunk.bypass.data()),
                            static_cast<TSize>(chunk.bypass.size()));
        static_cast<void>(component_->setState(&bypass));
    }
    return kResultOk;
} catch (const std::exception&) {
    return kResultFalse;
}

/// The wrapper believes that a stream takes everything at once: so it is given one that does.
tresult PlugInComponent::getState(IBStream* state) try {
    if (state == nullptr) {
        return kInvalidArgument;
    }
    MemoryStream chunk;
    const auto result = component_->getState(&chunk);
    if (result != kResultOk || !quillo_.hasSaved()) {
        return kResultFalse;
    }
    return writeAll(*state, chunk.getData(), chunk.getSize()) ? kResultOk : kResultFalse;
} catch (const std::exception&) {
    return kResultFalse;
}

tresult PlugInComponent::setActive(TBool state) {
    isActive_ = false;
    const auto result = inTheWrapper([&] { return component_->setActive(state); });
    if (state == 0 || result != kResultOk) {
        return result;
    }
    isActive_ = quillo_.canRender();
    if (!isActive_) {
        static_cast<void>(component_->setActive(0));
    }
    return isActive_ ? kResultOk : kResultFalse;
}

/// The wrapper believes that a block is as long as was announced. What comes with neither frames nor busses
/// it hands to the host, past the rules: so it is given a bus without channels, or nobody to hand it to where
/// nobody hears what the rules send.
tresult PlugInComponent::process(ProcessData& data) {
    if (data.numSamples < 0 || data.numSamples > longestBlock_) {
        quillo_.reset();
        return kInvalidArgument;
    }
    IncomingEvents incoming(data.inputEvents);
    OutgoingEvents outgoing(data.outputEvents);
    auto block = data;
    AudioBusBuffers noChannels;
    const bool hasFrames = data.numSamples > 0;
    const bool isRendered = hasFrames || (isActive_ && data.outputEvents != nullptr);
    if (!hasFrames) {
        block.numInputs = 0;
        block.numOutputs = isRendered ? 1 : 0;
        block.outputs = &noChannels;
    }
    block.inputEvents = data.inputEvents != nullptr ? &incoming : nullptr;
    block.outputEvents = isRendered && data.outputEvents != nullptr ? &outgoing : nullptr;
    return processor_->process(block);
}

tresult PlugInComponent::initialize(FUnknown* context) {
    return component_->initialize(context);
}

tresult PlugInComponent::terminate() {
    return component_->terminate();
}

tresult PlugInComponent::getControllerClassId(TUID classId) {
    return component_->getControllerClassId(classId);
}

tresult PlugInComponent::setIoMode(IoMode mode) {
    return component_->setIoMode(mode);
}

int32 PlugInComponent::getBusCount(MediaType type, BusDirection direction) {
    return component_->getBusCount(type, direction);
}

tresult PlugInComponent::getBusInfo(MediaType type, BusDirection direction, int32 index, BusInfo& bus) {
    return component_->getBusInfo(type, direction, index, bus);
}

tresult PlugInComponent::getRoutingInfo(RoutingInfo& in, RoutingInfo& out) {
    return component_->getRoutingInfo(in, out);
}

tresult PlugInComponent::activateBus(MediaType type, BusDirection direction, int32 index, TBool state) {
    return component_->activateBus(type, direction, index, state);
}

tresult PlugInComponent::setBusArrangements(SpeakerArrangement* inputs, int32 inputCount,
                                            SpeakerArrangement* outputs, int32 outputCount) {
    return processor_->setBusArrangements(inputs, inputCount, outputs, outputCount);
}

tresult PlugInComponent::getBusArrangement(BusDirection direction, int32 index,
                                           SpeakerArrangement& arrangement) {
    return processor_->getBusArrangement(direction, index, arrangement);
}

tresult PlugInComponent::canProcessSampleSize(int32 sampleSize) {
    return processor_->canProcessSampleSize(sampleSize);
}

uint32 PlugInComponent::getLatencySamples() {
    return processor_->getLatencySamples();
}

tresult PlugInComponent::setupProcessing(ProcessSetup& setup) {
    if (setup.maxSamplesPerBlock < 0 || setup.maxSamplesPerBlock > mostFrames) {
        return kInvalidArgument;
    }
    auto roomy = setup;
    roomy.maxSamplesPerBlock = std::max(setup.maxSamplesPerBlock, leastFrames);
    const auto result = inTheWrapper([&] { return processor_->setupProcessing(roomy); });
    if (result == kResultOk) {
        longestBlock_ = roomy.maxSamplesPerBlock;
    }
    return result;
}

tresult PlugInComponent::setProcessing(TBool state) {
    return processor_->setProcessing(state);
}

uint32 PlugInComponent::getTailSamples() {
    return processor_->getTailSamples();
}

}  // namespace quillo
