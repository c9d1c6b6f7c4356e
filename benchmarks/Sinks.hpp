// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <span>

#include "audiounit/platform/AURenderEvent.hpp"
#include "engine/MIDIMessage.hpp"
#include "engine/SampleTime.hpp"
#include "platform/OSStatus.hpp"
#include "platform/RealTime.hpp"

/// Where the messages of a benchmark go: each looks at what it is given and keeps nothing.
namespace quillo::bench {

/// Stands where the unit stands for the processor.
struct ProcessorSink {
    OSStatus operator()(SampleTime time, std::uint8_t /*cable*/,
                        std::span<const MIDIMessage> messages) QUILLO_REALTIME {
        benchmark::DoNotOptimize(time);
        for (const auto& message : messages) {
            benchmark::DoNotOptimize(message.bytes().data());
        }
        return noErr;
    }
};

/// Stands where the host stands for the unit.
struct UnitSink {
    OSStatus operator()(AUEventSampleTime time, std::uint8_t /*cable*/,
                        std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
        benchmark::DoNotOptimize(time);
        benchmark::DoNotOptimize(bytes.data());
        return noErr;
    }
};

}  // namespace quillo::bench
