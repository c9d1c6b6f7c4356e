// SPDX-License-Identifier: GPL-3.0-or-later
#include "audiounit/platform/AUAudioUnit.hpp"

#include <utility>

namespace quillo {

std::optional<NSError> AUAudioUnit::initialize(const AudioComponentDescription& description,
                                               AudioComponentInstantiationOptions /*options*/) {
    if (description.componentType == 0) {
        return NSError{NSOSStatusErrorDomain, kAudioComponentErr_InvalidComponentID};
    }
    description_ = description;
    return std::nullopt;
}

std::optional<NSError> AUAudioUnit::allocateRenderResources() {
    if (maximumFramesToRender == 0) {
        return NSError{NSOSStatusErrorDomain, kAudioUnitErr_InvalidPropertyValue};
    }
    renderResourcesAllocated_ = true;
    return std::nullopt;
}

void AUAudioUnit::deallocateRenderResources() {
    renderResourcesAllocated_ = false;
}

std::optional<StateDictionary> AUAudioUnit::fullState() const {
    StateDictionary state{{"type", static_cast<double>(description_.componentType)},
                          {"subtype", static_cast<double>(description_.componentSubType)},
                          {"manufacturer", static_cast<double>(description_.componentManufacturer)},
                          {"version", 0.0}};
    const std::lock_guard lock(stateMutex_);
    state.insert(lastState_.begin(), lastState_.end());
    return state;
}

void AUAudioUnit::setFullState(const std::optional<StateDictionary>& state) {
    if (!state) {
        return;
    }
    {
        const std::lock_guard lock(stateMutex_);
        lastState_ = *state;
    }
    allParameterValues_.notify();
}

Observation AUAudioUnit::observeAllParameterValues(std::function<void()> callback) {
    return allParameterValues_.add(std::move(callback));
}

void AUAudioUnit::selectViewConfiguration(const AUAudioUnitViewConfiguration& configuration) {
    selectedViewConfiguration_ = configuration;
}

}  // namespace quillo
