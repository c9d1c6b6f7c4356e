// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/UnitBridge.hpp"

#include <utility>
#include <variant>

#include "platform/FatalError.hpp"

namespace quillo {

namespace {

/// With its busses. The platform checks the description that the host asks for; the unit makes nothing of it.
std::shared_ptr<MIDIQuilloAUAudioUnit> makeUnit() {
    auto made = MIDIQuilloAUAudioUnit::create(midiQuilloComponent);
    if (const auto* error = std::get_if<NSError>(&made)) {
        fatalError("the unit cannot be made: status " + std::to_string(error->code));
    }
    auto unit = std::get<std::shared_ptr<MIDIQuilloAUAudioUnit>>(std::move(made));
    static_cast<void>(unit->inputBusses());
    static_cast<void>(unit->outputBusses());
    return unit;
}

/// A failure of the platform's kind needs no words.
std::optional<Failure> failureOf(const std::optional<NSError>& error) {
    if (!error) {
        return std::nullopt;
    }
    return Failure{*error, ""};
}

std::optional<Failure> setFormat(AUAudioUnitBus& bus, const AVAudioFormat& format) {
    const auto status = bus.setFormat(format);
    return status == noErr ? std::nullopt : failureOf(NSError{NSOSStatusErrorDomain, status});
}

}  // namespace

UnitBridge::UnitBridge()
    : unit_(makeUnit()),
      midiOutputNames_(unit_->MIDIOutputNames()),
      renderCycle_(std::make_shared<RenderCycle>(unit_->internalRenderBlock())) {}

void UnitBridge::setTellUser(std::function<void(std::string message)> tellUser) {
    tellUser_ = std::move(tellUser);
}

/// Tells the user what has not been done, when there are words for it.
bool UnitBridge::succeeds(const char* notDone, const std::optional<Failure>& failure) const noexcept {
    if (failure && !failure->text.empty()) {
        // When even telling fails, there is nobody left to tell it to.
        static_cast<void>(attempt([&] { tellUser_(std::string(notDone) + " " + failure->text); }));
    }
    return !failure;
}

void UnitBridge::takeHostBlocks(const std::function<HostBlocks()>& offered) noexcept {
    succeeds("MIDI Quillo cannot use what the host offers.", attempt([&] {
                 auto blocks = offered();
                 unit_->transportStateBlock = std::move(blocks.transportState);
                 unit_->MIDIOutputEventBlock = std::move(blocks.midiOutputEvent);
             }));
}

std::optional<Failure> UnitBridge::allocateRenderResources(const AVAudioFormat& input,
                                                           const AVAudioFormat& output,
                                                           AUAudioFrameCount maximumFrames) noexcept {
    sampleRateBefore_ = unit_->processor->sampleRate;
    unit_->maximumFramesToRender = maximumFrames;
    std::optional<Failure> failure;
    auto thrown = attempt([&] {
        failure = setFormat(unit_->inputBusses()[0], input);
        failure = failure ? failure : setFormat(unit_->outputBusses()[0], output);
        failure = failure ? failure : failureOf(unit_->allocateRenderResources());
    });
    if (thrown) {
        failure = std::move(thrown);
    }
    if (!succeeds("The host cannot start MIDI Quillo.", failure)) {
        undoAllocation();
    }
    return failure;
}

void UnitBridge::undoAllocation() noexcept {
    unit_->deallocateRenderResources();
    unit_->processor->sampleRate = sampleRateBefore_;
}

void UnitBridge::deallocateRenderResources() noexcept {
    unit_->deallocateRenderResources();
    succeeds("MIDI Quillo could not go on.", attempt([this] { unit_->processor->fatalErrors.raise(); }));
}

std::optional<Data> UnitBridge::stateDocument(bool platformHasState) noexcept {
    std::optional<Data> document;
    const auto failure = attempt([&] {
        document = std::get<Data>(unit_->fullState().value().at(stateKey));
        if (!platformHasState) {
            fatalError("the platform keeps no state");
        }
    });
    if (!succeeds("The rules cannot be saved with the host's project.", failure)) {
        document.reset();
    }
    return document;
}

bool UnitBridge::restore(const std::function<StateDictionary()>& read) noexcept {
    return succeeds("What the host has saved is not taken, and the rules stay as they are.",
                    attempt([&] { unit_->setFullState(read()); }));
}

bool UnitBridge::supportsView(double width, double height) const noexcept {
    bool supported = false;
    const auto failure = attempt([&] {
        const AUAudioUnitViewConfiguration view{width, height};
        supported = !unit_->supportedViewConfigurations({&view, 1}).empty();
    });
    return supported && !failure;
}

}  // namespace quillo
