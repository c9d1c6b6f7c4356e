// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace quillo {

/// The result of a host-facing operation: `noErr` or a code that names what went wrong.
using OSStatus = std::int32_t;

inline constexpr OSStatus noErr = 0;

/// Codes of the audio-unit platform that this system returns, with the platform's names and values.
inline constexpr OSStatus kAudioUnitErr_InvalidPropertyValue = -10851;
inline constexpr OSStatus kAudioUnitErr_FormatNotSupported = -10868;
inline constexpr OSStatus kAudioUnitErr_FailedInitialization = -10875;
inline constexpr OSStatus kAudioComponentErr_InvalidComponentID = -3000;

/// What a render step returns after it has left a fatal error in its `FatalErrorSlot`. A code of our own,
/// outside the ranges that the platform uses.
inline constexpr OSStatus kQuilloErr_FatalError = -60700;

/// What one of our hosts returns for a message for which its output has no room. Of the same range.
inline constexpr OSStatus kQuilloErr_OutputFull = -60701;

}  // namespace quillo
