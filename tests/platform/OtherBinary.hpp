// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstdint>

#include "platform/DispatchQueue.hpp"
#include "platform/ReaderGate.hpp"

// Functions of a shared object that has, as a plug-in does, a copy of its own of everything that it is linked
// from, the C++ library's templates among it.
extern "C" {

/// Enters the gate in each round, counts the entry in `entered`, and leaves only when the thread `closer`
/// closes the gate and sleeps.
void otherBinaryLeavesClosingGate(quillo::ReaderGate& gate, std::atomic<int>& entered, int rounds,
                                  pid_t closer);

/// Enters the queue so many times, as a render thread.
void otherBinaryEnters(quillo::DispatchQueue& queue, std::uint64_t times);

/// Closes the queue again and again, until `done`; returns how often.
std::uint64_t otherBinaryCloses(quillo::DispatchQueue& queue, const std::atomic<bool>& done);
}
