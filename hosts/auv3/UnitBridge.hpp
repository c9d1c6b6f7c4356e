// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "audiounit/MIDIQuilloAUAudioUnit.hpp"
#include "audiounit/platform/AUAudioUnit.hpp"
#include "audiounit/platform/AUAudioUnitBus.hpp"
#include "hosts/auv3/Failure.hpp"
#include "hosts/auv3/HostBlocks.hpp"
#include "hosts/auv3/RenderCycle.hpp"

namespace quillo {

/// All that the platform's audio-unit object does for which no type of the platform is needed. It owns the
/// unit. What goes wrong goes to the host as an error or a refusal and to the editor's user in words, and
/// leaves what was there. Threads as the unit's operations of the same names. Nothing throws, save for making
/// one, for which memory may be missing.
class UnitBridge {
public:
    UnitBridge();

    [[nodiscard]] const std::shared_ptr<MIDIQuilloAUAudioUnit>& unit() const noexcept { return unit_; }

    /// The names of the MIDI outputs.
    [[nodiscard]] const std::vector<std::string>& midiOutputNames() const noexcept {
        return midiOutputNames_;
    }

    /// [before the host has the unit] `tellUser` shows a message in the editor, from any thread but render.
    /// Until then nobody is told.
    void setTellUser(std::function<void(std::string message)> tellUser);

    /// [any but render] The host has set one of its blocks, or taken one away: the next cycle uses those that
    /// `offered` returns.
    void takeHostBlocks(const std::function<HostBlocks()>& offered) noexcept;

    /// The unit's part of getting ready to render, at the formats that the host has given the platform's
    /// busses. The platform's own part comes after it; where that fails, `undoAllocation` must follow.
    /// Nothing on success.
    [[nodiscard]] std::optional<Failure> allocateRenderResources(const AVAudioFormat& input,
                                                                 const AVAudioFormat& output,
                                                                 AUAudioFrameCount maximumFrames) noexcept;
    /// Nothing has been allocated after all.
    void undoAllocation() noexcept;
    /// After the platform's own part. A fatal error that a cycle has left behind is told now.
    void deallocateRenderResources() noexcept;

    /// What the render block calls; always the same. It does not keep the unit alive.
    [[nodiscard]] const std::shared_ptr<RenderCycle>& renderCycle() const noexcept { return renderCycle_; }

    /// [any but render] The state document, for the state dictionary; nothing when it cannot be had, or when
    /// the platform has no dictionary to put it into.
    [[nodiscard]] std::optional<Data> stateDocument(bool platformHasState) noexcept;

    /// [any but render] Installs the rules of the state that `read` brings. Whether the platform shall take
    /// the state as well: not when the unit has refused it.
    [[nodiscard]] bool restore(const std::function<StateDictionary()>& read) noexcept;

    [[nodiscard]] bool supportsView(double width, double height) const noexcept;

private:
    bool succeeds(const char* notDone, const std::optional<Failure>& failure) const noexcept;

    std::shared_ptr<MIDIQuilloAUAudioUnit> unit_;
    std::vector<std::string> midiOutputNames_;
    std::shared_ptr<RenderCycle> renderCycle_;
    std::function<void(std::string message)> tellUser_ = [](const std::string&) {};
    std::uint64_t sampleRateBefore_ = 0;  ///< the processor's, before the last allocation
};

}  // namespace quillo
