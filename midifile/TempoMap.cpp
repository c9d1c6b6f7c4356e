// SPDX-License-Identifier: GPL-3.0-or-later
#include "midifile/TempoMap.hpp"

#include <algorithm>
#include <iterator>
#include <limits>

namespace quillo {

namespace {

constexpr std::uint32_t microsecondsPerSecond = 1'000'000;

/// The frames in `seconds` seconds; the two are whole numbers and as small as they can be.
struct FrameRate {
    std::uint32_t frames;
    std::uint32_t seconds;
};

FrameRate frameRateOf(const TicksPerFrame& division) {
    if (division.framesPerSecond == 29) {
        return {30'000, 1'001};
    }
    return {division.framesPerSecond, 1};
}

}  // namespace

std::vector<TempoChange> tempoChangesOf(const MIDITrack& track) {
    std::vector<TempoChange> changes;
    for (const auto& event : track.events) {
        if (const auto tempo = tempoOf(event)) {
            changes.push_back({event.tick, *tempo});
        }
    }
    return changes;
}

TempoMap::TempoMap(const MIDIDivision& division, std::span<const TempoChange> changes,
                   std::uint32_t sampleRate) {
    if (const auto* frame = std::get_if<TicksPerFrame>(&division)) {
        const auto rate = frameRateOf(*frame);
        partsPerSample_ = Wide{rate.frames} * frame->ticks;
        stretches_.push_back({0, 0, Wide{rate.seconds} * sampleRate});
        return;
    }
    partsPerSample_ = Wide{microsecondsPerSecond} * std::get<TicksPerQuarter>(division).ticks;
    stretches_.push_back({0, 0, Wide{initialTempo} * sampleRate});
    for (const auto& change : changes) {
        begin(change.tick, Wide{change.microsecondsPerQuarter} * sampleRate);
    }
}

void TempoMap::begin(Tick tick, Wide timePerTick) {
    const auto& last = stretches_.back();
    stretches_.push_back({tick, last.firstTime + (tick - last.firstTick) * last.timePerTick, timePerTick});
}

SampleTime TempoMap::sampleTime(Tick tick) const {
    const auto next = std::ranges::upper_bound(stretches_, tick, {}, &Stretch::firstTick);
    const auto& stretch = *std::prev(next);
    const auto time = stretch.firstTime + (tick - stretch.firstTick) * stretch.timePerTick;
    const auto nearest = (2 * time + partsPerSample_) / (2 * partsPerSample_);
    return static_cast<SampleTime>(std::min<Wide>(nearest, latestSampleTime));
}

Tick TempoMap::tick(SampleTime sampleTime) const {
    const auto time = std::max<Wide>(sampleTime, 0) * partsPerSample_;
    const auto next = std::ranges::upper_bound(stretches_, time, {}, &Stretch::firstTime);
    const auto& stretch = *std::prev(next);
    const auto twice = 2 * (time - stretch.firstTime) + stretch.timePerTick - 1;
    const auto nearest = stretch.firstTick + twice / (2 * stretch.timePerTick);
    return static_cast<Tick>(std::min<Wide>(nearest, std::numeric_limits<Tick>::max()));
}

}  // namespace quillo
