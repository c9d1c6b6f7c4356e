// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "rules/Rule.hpp"
#include "support/OutputRecorder.hpp"

namespace quillo::test {

/// What stands between a host and the rules.
enum class Format : std::uint8_t { renderer, unit, lv2, clap, jack };

[[nodiscard]] std::string nameOf(Format format);

/// A report of the host's transport, in frames; without a position it goes on from the one that is known.
struct TransportReport {
    bool moves = false;
    bool records = false;
    std::optional<std::int64_t> position;
    bool cycles = false;
    double speed = 1.0;      ///< while it moves, in frames of the position for one of the block
    bool starts = false;     ///< it stands there and is about to move; said by a JACK server alone
    bool isOfBlock = false;  ///< told with the block, in which it comes first, and not among its events
};

/// What comes in at one frame of a block: the same message so many times, or a report of the transport.
struct Incoming {
    std::uint32_t offset = 0;
    std::variant<Bytes, TransportReport> what;
    std::uint32_t times = 1;
};

/// How much the host takes in one block; a message costs what `costOf` says. A CLAP host counts messages.
struct RoomLimit {
    std::size_t bytes = 0;
    bool takesSystemExclusive = true;  ///< asked by CLAP alone

    [[nodiscard]] std::size_t messages() const { return bytes / 24; }
};

/// A block, and as many more of the same length without events as make up `count`.
struct BlockStep {
    std::uint32_t frames = 0;
    std::uint32_t count = 1;
    std::vector<Incoming> events;
    std::optional<RoomLimit> room;
};

/// The rules are these from now on: as a preset that is imported where an editor is open, and as a state
/// where one was.
struct EditStep {
    std::vector<Rule> rules;
};
struct SendStep {
    RuleOutputVariantsV2 message;
};
/// The user wants silence.
struct PanicStep {};
/// An invalid rate is rejected.
struct RateStep {
    double rate = 0.0;
};
/// Keeps the state as a document.
struct SaveStep {};
/// Restores what was kept last, here.
struct RestoreStep {};
/// Restores a document that ends too early: the unit has no rules then, and everywhere else nothing happens.
struct DamagedStep {
    std::uint32_t length = 0;  ///< of what is left of the saved one, over again where it is longer
};
/// Saves, and goes on with another instance, in which the state was restored.
struct MoveStep {};
/// Deactivates, and activates so many frames later by the clock of a CLAP host or a JACK server; or a CLAP
/// host's `reset`, which comes to the same, and cycles of a JACK server that are missed.
struct RestartStep {
    bool isReset = false;
    std::uint32_t frames = 0;
};

/// What a user does with the editor; all but `open` needs one that is open. `number` chooses a rule and a
/// place.
struct UserStep {
    enum class Action : std::uint8_t { open, close, add, duplicate, remove, move, switchOff, undo, redo };
    Action action = Action::open;
    std::uint32_t number = 0;
};

using Step = std::variant<BlockStep, EditStep, SendStep, PanicStep, RateStep, SaveStep, RestoreStep,
                          DamagedStep, MoveStep, RestartStep, UserStep>;

/// What a host, its user and its player do to an instance, one step after the other.
struct Scenario {
    Format format = Format::renderer;
    double rate = 48000.0;
    bool stopsAsleep = false;  ///< a CLAP host that stops a plug-in that may sleep
    std::vector<Step> steps;
};

/// Of a message in the host's output.
[[nodiscard]] std::size_t costOf(std::size_t bytes);

/// A line for each step and rule.
[[nodiscard]] std::string describe(const Scenario& scenario);

}  // namespace quillo::test
