// SPDX-License-Identifier: GPL-3.0-or-later
#include "audiounit/MIDIQuilloAUAudioUnit.hpp"

#include <cmath>
#include <utility>

#include "persistence/DecodingError.hpp"
#include "platform/FatalError.hpp"

namespace quillo {

namespace {

std::shared_ptr<AUAudioUnitBus> makeBus() {
    constexpr std::uint32_t maximumChannelCount = 8;
    const AVAudioFormat format{AVAudioCommonFormat::pcmFormatFloat32, 44100.0, 2, false};
    auto bus = AUAudioUnitBus::withFormat(format);
    if (!bus) {
        fatalError("a bus cannot be made");
    }
    bus->setMaximumChannelCount(maximumChannelCount);
    return bus;
}

std::uint64_t integralSampleRate(double rate) {
    constexpr double tooLarge = 18446744073709551616.0;  // 2^64
    if (!std::isfinite(rate) || rate <= -1.0 || rate >= tooLarge) {
        fatalError("the sample rate is not a whole number of samples: " + std::to_string(rate));
    }
    return static_cast<std::uint64_t>(std::trunc(rate));
}

bool isSupported(const AUAudioUnitViewConfiguration& view) {
    constexpr double least = 200.0;
    const bool unconstrained = view.width == 0.0 && view.height == 0.0;
    return unconstrained || (view.width >= least && view.height >= least);
}

/// The rules of a state document; none for bytes that are no such document.
PluginData readRules(const Data& document) {
    try {
        return PluginData::read(document);
    } catch (const DecodingError&) {
        return {};
    }
}

Data writeRules(const PluginData& rules) {
    try {
        return rules.write();
    } catch (const EncodingError& error) {
        fatalError(std::string("the rules cannot be saved: ") + error.what());
    }
}

}  // namespace

std::variant<std::shared_ptr<MIDIQuilloAUAudioUnit>, NSError> MIDIQuilloAUAudioUnit::create(
    const AudioComponentDescription& description, AudioComponentInstantiationOptions options) {
    std::shared_ptr<MIDIQuilloAUAudioUnit> unit(new MIDIQuilloAUAudioUnit());
    if (auto error = unit->initialize(description, options)) {
        return *std::move(error);
    }
    return unit;
}

AUAudioUnitBus& MIDIQuilloAUAudioUnit::inputBus() {
    if (!inputBus_) {
        inputBus_ = makeBus();
    }
    return *inputBus_;
}

AUAudioUnitBus& MIDIQuilloAUAudioUnit::outputBus() {
    if (!outputBus_) {
        outputBus_ = makeBus();
    }
    return *outputBus_;
}

AUAudioUnitBusArray& MIDIQuilloAUAudioUnit::inputBusses() {
    if (!inputBusses_) {
        inputBus();
        inputBusses_ = std::make_unique<AUAudioUnitBusArray>(
            *this, AUAudioUnitBusType::input, std::vector<std::shared_ptr<AUAudioUnitBus>>{inputBus_});
    }
    return *inputBusses_;
}

AUAudioUnitBusArray& MIDIQuilloAUAudioUnit::outputBusses() {
    if (!outputBusses_) {
        outputBus();
        outputBusses_ = std::make_unique<AUAudioUnitBusArray>(
            *this, AUAudioUnitBusType::output, std::vector<std::shared_ptr<AUAudioUnitBus>>{outputBus_});
    }
    return *outputBusses_;
}

std::vector<std::string> MIDIQuilloAUAudioUnit::MIDIOutputNames() const {
    return {"MIDIQuillo"};
}

std::optional<NSError> MIDIQuilloAUAudioUnit::allocateRenderResources() {
    if (inputBus().format().channelCount != outputBus().format().channelCount) {
        return NSError{NSOSStatusErrorDomain, kAudioUnitErr_FailedInitialization};
    }
    if (auto error = AUAudioUnit::allocateRenderResources()) {
        return error;
    }
    try {
        processor->sampleRate = integralSampleRate(outputBusses()[0].format().sampleRate);
    } catch (const FatalError&) {
        deallocateRenderResources();
        throw;
    }
    return std::nullopt;
}

std::optional<StateDictionary> MIDIQuilloAUAudioUnit::fullState() const {
    auto state = AUAudioUnit::fullState();
    auto document = writeRules(stored());
    if (!state) {
        fatalError("the platform keeps no state");
    }
    state->insert_or_assign(stateKey, std::move(document));
    return state;
}

void MIDIQuilloAUAudioUnit::setFullState(const std::optional<StateDictionary>& state) {
    if (!state) {
        return;
    }
    const auto found = state->find(stateKey);
    if (found == state->end()) {
        fatalError(std::string("the restored state has no \"") + stateKey + "\"");
    }
    const auto* document = std::get_if<Data>(&found->second);
    if (document == nullptr) {
        fatalError(std::string("the restored state's \"") + stateKey + "\" is not data");
    }
    auto [rules, shelf] = readRules(*document);
    {
        const std::lock_guard lock(installing_);
        processor->setRules(std::move(rules), shelf);
        shelf_ = std::move(shelf);
        restored_ = true;
    }
    AUAudioUnit::setFullState(state);
}

void MIDIQuilloAUAudioUnit::install(std::vector<Rule> rules, RuleShelf shelf) {
    const std::lock_guard lock(installing_);
    if (!restored_) {
        processor->setRules(std::move(rules), shelf);
        shelf_ = std::move(shelf);
    }
}

PluginData MIDIQuilloAUAudioUnit::show() {
    const std::lock_guard lock(installing_);
    restored_ = false;
    return {processor->rules(), shelf_};
}

PluginData MIDIQuilloAUAudioUnit::stored() const {
    const std::lock_guard lock(installing_);
    return {processor->rules(), shelf_};
}

std::vector<std::size_t> MIDIQuilloAUAudioUnit::supportedViewConfigurations(
    std::span<const AUAudioUnitViewConfiguration> available) const {
    std::vector<std::size_t> supported;
    for (std::size_t index = 0; index < available.size(); ++index) {
        if (isSupported(available[index])) {
            supported.push_back(index);
        }
    }
    return supported;
}

}  // namespace quillo
