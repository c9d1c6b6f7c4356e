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

Wide operator+(const Wide& first, const Wide& second) {
    const auto low = first.low + second.low;
    const auto carry = std::uint64_t{low < first.low};
    return {first.high + second.high + carry, low};
}

Wide operator-(const Wide& first, const Wide& second) {
    const auto borrow = std::uint64_t{first.low < second.low};
    return {first.high - second.high - borrow, first.low - second.low};
}

/// As on paper, with digits of 32 bits.
Wide product(std::uint64_t first, std::uint64_t second) {
    constexpr auto digit = 32U;
    constexpr auto mask = (std::uint64_t{1} << digit) - 1;
    const auto lowest = (first & mask) * (second & mask);
    const auto middle = (first >> digit) * (second & mask) + (lowest >> digit);
    const auto other = (first & mask) * (second >> digit) + (middle & mask);
    return {(first >> digit) * (second >> digit) + (middle >> digit) + (other >> digit),
            (other << digit) | (lowest & mask)};
}

/// As on paper, with digits of one bit.
std::uint64_t quotient(const Wide& dividend, std::uint64_t divisor) {
    if (dividend.high >= divisor) {
        return std::numeric_limits<std::uint64_t>::max();
    }
    auto rest = dividend.high;
    std::uint64_t result = 0;
    for (auto bit = 64U; bit > 0; --bit) {
        rest = 2 * rest + (dividend.low >> (bit - 1) & 1U);
        const bool fits = rest >= divisor;
        rest -= fits ? divisor : 0;
        result = 2 * result + (fits ? 1 : 0);
    }
    return result;
}

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
        partsPerSample_ = std::uint64_t{rate.frames} * frame->ticks;
        stretches_.push_back({0, {}, std::uint64_t{rate.seconds} * sampleRate});
        return;
    }
    partsPerSample_ = std::uint64_t{microsecondsPerSecond} * std::get<TicksPerQuarter>(division).ticks;
    stretches_.push_back({0, {}, std::uint64_t{initialTempo} * sampleRate});
    for (const auto& change : changes) {
        begin(change.tick, std::uint64_t{change.microsecondsPerQuarter} * sampleRate);
    }
}

Wide TempoMap::Stretch::timeOf(Tick tick) const {
    return firstTime + product(static_cast<std::uint64_t>(tick - firstTick), timePerTick);
}

void TempoMap::begin(Tick tick, std::uint64_t timePerTick) {
    stretches_.push_back({tick, stretches_.back().timeOf(tick), timePerTick});
}

SampleTime TempoMap::sampleTime(Tick tick) const {
    const auto next = std::ranges::upper_bound(stretches_, tick, {}, &Stretch::firstTick);
    const auto time = std::prev(next)->timeOf(tick);
    const auto nearest = quotient(time + time + Wide{0, partsPerSample_}, 2 * partsPerSample_);
    return static_cast<SampleTime>(std::min(nearest, std::uint64_t{latestSampleTime}));
}

Tick TempoMap::tick(SampleTime sampleTime) const {
    const auto time =
        product(static_cast<std::uint64_t>(std::max(sampleTime, SampleTime{0})), partsPerSample_);
    const auto next = std::ranges::upper_bound(stretches_, time, {}, &Stretch::firstTime);
    const auto& stretch = *std::prev(next);
    const auto since = time - stretch.firstTime;
    const auto nearest = quotient(since + since + Wide{0, stretch.timePerTick - 1}, 2 * stretch.timePerTick);
    const auto most = static_cast<std::uint64_t>(std::numeric_limits<Tick>::max() - stretch.firstTick);
    return stretch.firstTick + static_cast<Tick>(std::min(nearest, most));
}

}  // namespace quillo
