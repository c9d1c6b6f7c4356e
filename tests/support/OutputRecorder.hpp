// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <iomanip>
#include <limits>
#include <ostream>
#include <span>
#include <utility>
#include <vector>

#include "engine/MIDIMessage.hpp"
#include "engine/SampleTime.hpp"
#include "platform/OSStatus.hpp"

namespace quillo::test {

using Bytes = std::vector<std::uint8_t>;

inline Bytes copyOf(std::span<const std::uint8_t> bytes) {
    return {bytes.begin(), bytes.end()};
}

/// One call of an output function.
struct Emission {
    SampleTime time = 0;
    std::vector<Bytes> messages;
    std::uint8_t cable = 0;

    bool operator==(const Emission&) const = default;

    friend void PrintTo(const Emission& emission, std::ostream* out) {
        *out << "{" << emission.time << ":" << std::hex << std::setfill('0');
        for (const auto& message : emission.messages) {
            *out << " [";
            for (const auto byte : message) {
                *out << " " << std::setw(2) << unsigned{byte};
            }
            *out << " ]";
        }
        *out << std::dec << "}";
    }
};

/// An output function that keeps what it is given, and can be told to fail.
class OutputRecorder {
public:
    /// The calls that were accepted and had messages, in order.
    std::vector<Emission> emissions;
    /// How many calls came, empty and failed ones included.
    std::size_t calls = 0;
    /// How many calls are still accepted before one is answered with `failure`.
    std::size_t acceptedBeforeFailure = std::numeric_limits<std::size_t>::max();
    OSStatus failure = -1;

    OSStatus operator()(SampleTime time, std::uint8_t cable, std::span<const MIDIMessage> messages) {
        ++calls;
        if (acceptedBeforeFailure-- == 0) {
            return failure;
        }
        Emission emission{time, {}, cable};
        for (const auto& message : messages) {
            emission.messages.push_back(copyOf(message.bytes()));
        }
        if (!emission.messages.empty()) {
            emissions.push_back(std::move(emission));
        }
        return noErr;
    }

    /// The emissions so far, which are then forgotten.
    std::vector<Emission> take() { return std::exchange(emissions, {}); }
};

}  // namespace quillo::test
