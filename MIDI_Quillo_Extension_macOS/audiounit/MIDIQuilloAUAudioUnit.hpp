// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "audiounit/platform/AUAudioUnit.hpp"
#include "engine/RuleProcessor.hpp"
#include "log/LogCallback.hpp"
#include "persistence/PluginData.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// The component that hosts of our own ask for: type 'aumi', a MIDI processor; subtype 'Qull'; maker 'Qulo'.
inline constexpr AudioComponentDescription midiQuilloComponent{0x61756D69, 0x51756C6C, 0x51756C6F};

/// The key of the state document among what the host saves: its value is the document's bytes.
inline constexpr const char* stateKey = "midi-quillo-state";

/// The plug-in object that a host talks to: a MIDI processor with one audio bus each way that it never
/// touches, one MIDI output named "MIDIQuillo" and no parameters. It shows the processor every incoming event
/// and the host's transport changes, hands the processor's messages to the host, and saves and restores the
/// rules.
///
/// Threads: [main], except the render block [render] and the state [any]. The bodies of what the render
/// thread runs stand in MIDIQuilloAUAudioUnitRender.cpp.
class MIDIQuilloAUAudioUnit final : public AUAudioUnit,
                                    public std::enable_shared_from_this<MIDIQuilloAUAudioUnit> {
public:
    /// Makes a unit, or hands back the platform's error.
    [[nodiscard]] static std::variant<std::shared_ptr<MIDIQuilloAUAudioUnit>, NSError> create(
        const AudioComponentDescription& description, AudioComponentInstantiationOptions options = 0);

    [[nodiscard]] AUAudioUnitBusArray& inputBusses() override;
    [[nodiscard]] AUAudioUnitBusArray& outputBusses() override;
    [[nodiscard]] std::shared_ptr<AUParameterTree> parameterTree() override { return parameterTree_; }

    /// One name: "MIDIQuillo".
    [[nodiscard]] std::vector<std::string> MIDIOutputNames() const override;

    /// Fails with `kAudioUnitErr_FailedInitialization` when the busses differ in channels. Then hands the
    /// output bus's sample rate, truncated, to the processor, for rules that are installed from now on; a
    /// rate that does not fit an unsigned 64-bit integer is a fatal error, and nothing is allocated then.
    [[nodiscard]] std::optional<NSError> allocateRenderResources() override;

    /// Holds the unit weakly: it may outlive it, and then returns `noErr`. During a cycle the unit stays even
    /// if its last owner lets go of it; it goes with the cycle when it has no other owner. One cycle, in this
    /// order: on-load rules, messages sent by hand, delayed messages, a change of the transport, the MIDI
    /// events in list order. Other events, system exclusive among them, are not seen. A time that does not
    /// fit 64 bits is a fatal error, left in the processor's `fatalErrors`.
    [[nodiscard]] AUInternalRenderBlock internalRenderBlock() override;

    /// The base's state with the rules as a state document under `stateKey`.
    [[nodiscard]] std::optional<StateDictionary> fullState() const override;

    /// Installs the rules of the state; a document that cannot be read leaves no rules at all. A state
    /// without `stateKey`, or with something else than data under it, is a fatal error, as are rules that
    /// cannot be compiled; nothing changes then.
    void setFullState(const std::optional<StateDictionary>& state) override;

    /// Sizes of at least 200 × 200 points, and 0 × 0.
    [[nodiscard]] std::vector<std::size_t> supportedViewConfigurations(
        std::span<const AUAudioUnitViewConfiguration> available) const override;

    /// [any but render] Installs an edited list, and keeps the rules of it that are switched off. While a
    /// restored list waits to be shown, an edit is one of the list before, and is dropped. Throws the
    /// `FatalError` of rules that cannot be compiled; nothing changes then.
    void install(std::vector<Rule> rules, RuleShelf shelf = {});

    /// [any but render] What was installed last.
    [[nodiscard]] PluginData stored() const;

    /// [main] The same for an editor, whose edits are of this list from now on.
    [[nodiscard]] PluginData show();

    /// The rule engine; never replaced.
    const std::shared_ptr<RuleProcessor> processor = std::make_shared<RuleProcessor>();

    LogCallback logInput;   ///< every incoming event that the unit acts on, before the rules see it
    LogCallback logOutput;  ///< every message that the host has taken

private:
    MIDIQuilloAUAudioUnit() = default;

    AUAudioUnitBus& inputBus();
    AUAudioUnitBus& outputBus();

    OSStatus render(const AudioTimeStamp& timestamp, AUAudioFrameCount frameCount,
                    const AURenderEvent* events) QUILLO_REALTIME;
    OSStatus renderCycle(const AudioTimeStamp& timestamp, AUAudioFrameCount frameCount,
                         const AURenderEvent* events) QUILLO_REALTIME;
    OSStatus renderTransport(const OutputFunction& output, SampleTime first, SampleTime end) QUILLO_REALTIME;
    OSStatus renderEvents(const OutputFunction& output, const AURenderEvent* events,
                          SampleTime end) QUILLO_REALTIME;
    OSStatus sendMessages(const AUMIDIOutputEventBlock* host, SampleTime sampleTime, std::uint8_t cable,
                          std::span<const MIDIMessage> messages) QUILLO_REALTIME;

    mutable std::mutex installing_;  ///< of rules with their shelf
    RuleShelf shelf_;                ///< the rules that are switched off, with their places among the others
    bool restored_ = false;          ///< since the rules were shown
    std::shared_ptr<AUAudioUnitBus> inputBus_;
    std::unique_ptr<AUAudioUnitBusArray> inputBusses_;
    std::shared_ptr<AUAudioUnitBus> outputBus_;
    std::unique_ptr<AUAudioUnitBusArray> outputBusses_;
    std::shared_ptr<AUParameterTree> parameterTree_ = AUParameterTree::createTree({});

    /// [render] The flags at the last change of the transport.
    AUHostTransportStateFlags previousTransportState_ = 0;
};

}  // namespace quillo
