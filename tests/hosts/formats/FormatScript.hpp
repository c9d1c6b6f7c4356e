// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "engine/SampleTime.hpp"
#include "support/OutputRecorder.hpp"

/// What a host does to a unit in any format, and what must come of it: the same scripts are played through
/// every format, and what leaves is compared with what the unit itself makes of them.
///
/// Times are in frames at 48000 a second, counted from the first frame rendered. No two outputs of a script
/// are due at one time by different ways, so the order of what leaves does not depend on the lengths of the
/// blocks.
namespace quillo::test {

struct ScriptMessage {
    SampleTime time = 0;
    Bytes bytes;

    bool operator==(const ScriptMessage&) const = default;
    friend void PrintTo(const ScriptMessage& message, std::ostream* out) {
        PrintTo(Emission{message.time, {message.bytes}, 0}, out);
    }
};

/// From `time` on the transport moves, or stands still, at this position in frames.
struct ScriptTransport {
    SampleTime time = 0;
    bool moves = false;
    double position = 0.0;
};

struct FormatScript {
    std::string name;                        ///< letters only: a test is named after it
    std::vector<std::uint8_t> state;         ///< the state document
    std::vector<ScriptMessage> messages;     ///< in order of their times
    std::vector<ScriptTransport> transport;  ///< in order of their times
    SampleTime end = 0;                      ///< how many frames are played

    friend void PrintTo(const FormatScript& script, std::ostream* out) { *out << script.name; }
};

inline constexpr std::uint32_t scriptSampleRate = 48000;

/// All scripts.
[[nodiscard]] std::vector<FormatScript> formatScripts();

/// The script of that name.
[[nodiscard]] FormatScript formatScript(const std::string& name);

/// What the unit itself sends, in cycles of 512 frames that end where the transport changes; in time order.
[[nodiscard]] std::vector<ScriptMessage> playedByTheUnit(const FormatScript& script);

/// Lengths of blocks that are `end` frames in all: as many of `length` as there can be, then the rest.
[[nodiscard]] std::vector<std::uint32_t> evenBlocks(SampleTime end, std::uint32_t length);

/// Lengths from 1 to `longest`, always the same ones for a seed.
[[nodiscard]] std::vector<std::uint32_t> randomBlocks(SampleTime end, std::uint32_t longest, unsigned seed);

/// Has the script played in blocks of every power of two up to 8192 frames, of 1000 frames, and of random
/// lengths: what `play` answers must be what the unit sends, each time.
void expectAsTheUnit(
    const FormatScript& script,
    const std::function<std::vector<ScriptMessage>(const std::vector<std::uint32_t>& blocks)>& play);

}  // namespace quillo::test
