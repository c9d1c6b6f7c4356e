// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "audiounit/AudioUnitViewController.hpp"
#include "editor/QuilloView.hpp"
#include "engine/SampleTime.hpp"
#include "platform/MainQueue.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// A unit with its editor on a table of their own: no host application, no audio hardware. Cycles run when
/// `render` is called, and what the unit sends goes nowhere but into its log. [main] only.
class Desk {
public:
    /// Throws a `FatalError` for rules that cannot be installed.
    explicit Desk(std::vector<Rule> rules);
    ~Desk();
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    [[nodiscard]] QuilloView& view() { return *view_; }
    [[nodiscard]] MIDIQuilloAUAudioUnit& unit() { return *unit_; }

    /// Renders a cycle of this many frames with these messages at its start, after the last one.
    void render(std::uint32_t frames, const std::vector<std::vector<std::uint8_t>>& messages = {});

    /// Runs what waits for the main thread, the log's entries among it.
    void drain() { mainQueue_.drain(); }

    [[nodiscard]] SampleTime now() const { return now_; }

private:
    MainQueue mainQueue_;
    std::shared_ptr<AudioUnitViewController> controller_;
    std::shared_ptr<MIDIQuilloAUAudioUnit> unit_;
    std::unique_ptr<QuilloView> view_;
    AUInternalRenderBlock renderBlock_;
    SampleTime now_ = 0;
};

}  // namespace quillo
