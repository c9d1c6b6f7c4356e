// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "platform/RealTimeFunction.hpp"

namespace quillo {

/// A set of the host's transport flags, with the platform's values.
using AUHostTransportStateFlags = std::uint64_t;

inline constexpr AUHostTransportStateFlags AUHostTransportStateChanged = 1;
inline constexpr AUHostTransportStateFlags AUHostTransportStateMoving = 2;
inline constexpr AUHostTransportStateFlags AUHostTransportStateRecording = 4;
inline constexpr AUHostTransportStateFlags AUHostTransportStateCycling = 8;

/// The host's answer to "where is the transport?": fills what the non-null pointers point at with the flags,
/// the current position in samples, and the cycle's start and end in beats. Returns whether it could.
using AUHostTransportStateBlock =
    RealTimeFunction<bool(AUHostTransportStateFlags* flags, double* currentSamplePosition,
                          double* cycleStartBeatPosition, double* cycleEndBeatPosition)>;

}  // namespace quillo
