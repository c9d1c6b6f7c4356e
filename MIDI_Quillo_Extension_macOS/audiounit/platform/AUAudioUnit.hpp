// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "audiounit/platform/AUAudioUnitBus.hpp"
#include "audiounit/platform/AUHostTransportState.hpp"
#include "audiounit/platform/AUParameterTree.hpp"
#include "audiounit/platform/AURenderEvent.hpp"
#include "audiounit/platform/NSError.hpp"
#include "audiounit/platform/ReplaceableBlock.hpp"
#include "platform/Data.hpp"
#include "platform/Observers.hpp"

namespace quillo {

/// Data, a string, a number, or, last, a value of any other kind, which is not looked into.
using StateValue = std::variant<Data, std::string, double, std::monostate>;

/// What a host saves with its project: values by key.
using StateDictionary = std::map<std::string, StateValue>;

/// A size that the host could give the editor's view, in points. 0 × 0 leaves the size to the editor.
struct AUAudioUnitViewConfiguration {
    double width = 0.0;
    double height = 0.0;

    bool operator==(const AUAudioUnitViewConfiguration&) const = default;
};

/// Which component a unit is: four-character codes.
struct AudioComponentDescription {
    std::uint32_t componentType = 0;
    std::uint32_t componentSubType = 0;
    std::uint32_t componentManufacturer = 0;

    bool operator==(const AudioComponentDescription&) const = default;
};

/// How the host wants the unit to be made. The portable platform knows no options.
using AudioComponentInstantiationOptions = std::uint32_t;

/// What every audio unit is to its host; the base of ours. It keeps what the host sets and the parts of the
/// state that are not the unit's own.
///
/// Threads: [main] unless an operation says otherwise. The host may set its blocks while a cycle runs.
class AUAudioUnit {
public:
    virtual ~AUAudioUnit() = default;
    AUAudioUnit(const AUAudioUnit&) = delete;
    AUAudioUnit& operator=(const AUAudioUnit&) = delete;

    [[nodiscard]] const AudioComponentDescription& componentDescription() const { return description_; }

    [[nodiscard]] virtual AUAudioUnitBusArray& inputBusses() = 0;
    [[nodiscard]] virtual AUAudioUnitBusArray& outputBusses() = 0;
    [[nodiscard]] virtual std::shared_ptr<AUParameterTree> parameterTree() = 0;
    [[nodiscard]] virtual std::vector<std::string> MIDIOutputNames() const = 0;

    /// Gets ready to render at the busses' formats. Nothing on success. The base refuses a
    /// `maximumFramesToRender` of 0 with `kAudioUnitErr_InvalidPropertyValue`.
    [[nodiscard]] virtual std::optional<NSError> allocateRenderResources();
    virtual void deallocateRenderResources();
    [[nodiscard]] bool renderResourcesAllocated() const { return renderResourcesAllocated_; }

    /// The operation that the host calls once a cycle, on its render thread. It may outlive the unit.
    [[nodiscard]] virtual AUInternalRenderBlock internalRenderBlock() = 0;

    /// [any] What the host saves with its project. The base's part names the component ("type", "subtype",
    /// "manufacturer", "version") and holds every other key of the last state that was set.
    [[nodiscard]] virtual std::optional<StateDictionary> fullState() const;

    /// [any] Replaces the state; an absent one changes nothing. The base notifies those who observe all
    /// parameter values.
    virtual void setFullState(const std::optional<StateDictionary>& state);

    /// Runs `callback`, on the thread that sets the state, whenever the whole state was replaced.
    [[nodiscard]] Observation observeAllParameterValues(std::function<void()> callback);

    /// The indices, ascending, of those view sizes that the editor can have.
    [[nodiscard]] virtual std::vector<std::size_t> supportedViewConfigurations(
        std::span<const AUAudioUnitViewConfiguration> available) const = 0;
    virtual void selectViewConfiguration(const AUAudioUnitViewConfiguration& configuration);
    [[nodiscard]] const std::optional<AUAudioUnitViewConfiguration>& selectedViewConfiguration() const {
        return selectedViewConfiguration_;
    }

    /// How the host answers for its transport; absent when it has none.
    ReplaceableBlock<AUHostTransportStateBlock> transportStateBlock;

    /// Where the host takes MIDI; absent when it takes none.
    ReplaceableBlock<AUMIDIOutputEventBlock> MIDIOutputEventBlock;

    /// The longest cycle that the host will ask for, in frames. 512 until the host says otherwise, as on the
    /// platform.
    AUAudioFrameCount maximumFramesToRender = 512;

protected:
    AUAudioUnit() = default;

    /// The platform's part of making a unit. `kAudioComponentErr_InvalidComponentID` for a description
    /// without a type.
    [[nodiscard]] std::optional<NSError> initialize(const AudioComponentDescription& description,
                                                    AudioComponentInstantiationOptions options);

private:
    AudioComponentDescription description_;
    bool renderResourcesAllocated_ = false;
    std::optional<AUAudioUnitViewConfiguration> selectedViewConfiguration_;
    Observers allParameterValues_;
    mutable std::mutex stateMutex_;
    StateDictionary lastState_;
};

}  // namespace quillo
