// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

#include "audiounit/platform/AUAudioUnit.hpp"
#include "audiounit/platform/AUHostTransportState.hpp"
#include "audiounit/platform/AURenderEvent.hpp"
#include "platform/OSStatus.hpp"
#include "rules/Rule.hpp"

/// What a line of a script has the host do.
namespace quillo::script {

/// Drops the unit and makes a new one.
struct Create {};

/// Sets the unit's full state; nothing stands for an absent dictionary.
struct Restore {
    std::optional<StateDictionary> state;
};

/// Reads the unit's full state.
struct Save {};

/// Sets the formats of both busses and allocates render resources.
struct Allocate {
    double sampleRate = 44100.0;  ///< samples per second
    std::uint32_t inputChannels = 2;
    std::uint32_t outputChannels = 2;
};

/// Deallocates render resources.
struct Deallocate {};

/// Installs rules as the editor does.
struct Install {
    std::vector<Rule> rules;
};

/// Sends one output by hand, as the editor does.
struct Send {
    RuleOutputVariantsV2 output;
};

/// Where a host's transport is.
struct TransportState {
    AUHostTransportStateFlags flags = 0;
    double position = 0.0;  ///< samples
};

/// Offers a transport block that always gives this answer, or none.
struct Transport {
    std::optional<TransportState> state;
};

/// A status that the MIDI output block answers once, after it has accepted some more messages.
struct OutputFailure {
    std::uint64_t failAfter = 0;  ///< messages accepted before it
    OSStatus status = noErr;
};

/// Offers the MIDI output block or withdraws it, and may plan a failure of it.
struct Output {
    bool present = true;
    std::optional<OutputFailure> failure;
};

/// A system-exclusive event with the bytes that it owns.
struct SysExEvent {
    AUEventSampleTime time = 0;
    std::vector<std::uint8_t> bytes;
};

/// An event of a render cycle; a plain one is a parameter event or a parameter ramp.
using RenderEvent = std::variant<AUMIDIEvent, SysExEvent, AURenderEvent>;

/// Renders one cycle.
struct Render {
    double sampleTime = 0.0;  ///< the start of the cycle, in samples
    AUAudioFrameCount frames = 0;
    std::vector<RenderEvent> events;
};

/// Reads what the unit declares.
struct Describe {};

/// Offers view sizes.
struct Views {
    std::vector<AUAudioUnitViewConfiguration> sizes;
};

/// Asks how many delayed outputs wait.
struct Queue {};

}  // namespace quillo::script

namespace quillo {

using ScriptAction =
    std::variant<script::Create, script::Restore, script::Save, script::Allocate, script::Deallocate,
                 script::Install, script::Send, script::Transport, script::Output, script::Render,
                 script::Describe, script::Views, script::Queue>;

/// Reads the action of one script line: an object whose key "do" names it. Keys that the action does not know
/// are ignored. Throws a `DecodingError` for a line that is no action, with a key missing, of the wrong type
/// or out of range, or with keys that contradict each other.
[[nodiscard]] ScriptAction parseScriptAction(std::string_view line);

}  // namespace quillo
