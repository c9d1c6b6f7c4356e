// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <compare>
#include <cstdint>
#include <span>
#include <vector>

#include "engine/SampleTime.hpp"
#include "midifile/MIDIFile.hpp"

namespace quillo {

/// A whole number from 0 to 2^128 - 1. Compilers have one of their own for 64-bit processors alone.
struct Wide {
    std::uint64_t high = 0;
    std::uint64_t low = 0;

    auto operator<=>(const Wide&) const = default;
};

/// The sum is below 2^128.
[[nodiscard]] Wide operator+(const Wide& first, const Wide& second);

/// `second` is not the greater one.
[[nodiscard]] Wide operator-(const Wide& first, const Wide& second);

[[nodiscard]] Wide product(std::uint64_t first, std::uint64_t second);

/// Rounded down; 2^64 - 1 where it would be greater. `divisor` from 1 to 2^63.
[[nodiscard]] std::uint64_t quotient(const Wide& dividend, std::uint64_t divisor);

/// From this tick on, a quarter note lasts so many microseconds (at least 1).
struct TempoChange {
    Tick tick = 0;
    std::uint32_t microsecondsPerQuarter = initialTempo;
};

/// The tempo changes among the events of a merged track, in their order.
[[nodiscard]] std::vector<TempoChange> tempoChangesOf(const MIDITrack& track);

/// Where a MIDI file's ticks lie on a timeline of samples that begins with tick 0, and back.
///
/// All arithmetic is exact, in whole numbers, and each result is rounded once: a tick goes to the nearest
/// sample, half a sample up, and a sample to the nearest tick, half a tick down. A tick that lies at least
/// one sample from both of its neighbours therefore comes back as itself, however many tempo changes stand
/// before it.
class TempoMap {
public:
    /// `changes` in order of their ticks; of several at one tick the last holds. They count only where a tick
    /// is part of a quarter note. `sampleRate` in samples per second, at least 1.
    TempoMap(const MIDIDivision& division, std::span<const TempoChange> changes, std::uint32_t sampleRate);

    /// The greatest sample time that a render cycle's timestamp can say exactly.
    static constexpr SampleTime latestSampleTime = SampleTime{1} << 53;

    /// The sample nearest to `tick` (at least 0), or `latestSampleTime` if it lies beyond.
    [[nodiscard]] SampleTime sampleTime(Tick tick) const;

    /// The tick nearest to `sampleTime`, at least 0 and at most the greatest `Tick`. The last tempo goes on.
    [[nodiscard]] Tick tick(SampleTime sampleTime) const;

private:
    /// A stretch of one tempo, empty if another begins at its tick. Times are counted in parts of a sample,
    /// `partsPerSample_` to a sample: ticks times tempo times sample rate are up to 63 + 24 + 32 bits.
    struct Stretch {
        Tick firstTick;
        Wide firstTime;
        std::uint64_t timePerTick;

        [[nodiscard]] Wide timeOf(Tick tick) const;
    };

    /// Ends the last stretch at `tick` and begins another.
    void begin(Tick tick, std::uint64_t timePerTick);

    std::uint64_t partsPerSample_ = 1;
    std::vector<Stretch> stretches_;
};

}  // namespace quillo
