// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <optional>
#include <span>

#include "audiounit/MIDIQuilloAUAudioUnit.hpp"
#include "scriptedhost/ScriptAction.hpp"

namespace quillo {

/// A host application with one unit that does what a script says, through the unit's host interface only, and
/// writes what came of it: compact JSON, one object a line.
///
/// At first the unit is new, no render resources are allocated, there is no transport block, and there is a
/// MIDI output block that accepts everything.
class ScriptedHost {
public:
    /// Writes to `out`, which outlives the host.
    explicit ScriptedHost(std::ostream& out);

    ScriptedHost(const ScriptedHost&) = delete;
    ScriptedHost& operator=(const ScriptedHost&) = delete;

    /// Writes the lines of the events that the action causes, in the order in which they happen, then one
    /// closing line, and flushes. A fatal error of the unit is thrown as a `FatalError`, without a closing
    /// line.
    void perform(const ScriptAction& action);

private:
    void perform(const script::Create& action);
    void perform(const script::Restore& action);
    void perform(const script::Save& action);
    void perform(const script::Allocate& action);
    void perform(const script::Deallocate& action);
    void perform(const script::Install& action);
    void perform(const script::Send& action);
    void perform(const script::Transport& action);
    void perform(const script::Output& action);
    void perform(const script::Render& action);
    void perform(const script::Describe& action);
    void perform(const script::Views& action);
    void perform(const script::Queue& action);

    void makeUnit();
    void offerOutput();
    OSStatus takeMIDI(AUEventSampleTime time, std::uint8_t cable, std::span<const std::uint8_t> bytes);
    OSStatus answerToMessage();
    std::optional<NSError> allocate(const script::Allocate& formats);

    std::ostream& out_;
    std::optional<script::OutputFailure> plannedFailure_;
    std::shared_ptr<MIDIQuilloAUAudioUnit> unit_;
};

}  // namespace quillo
