// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <csignal>
#include <initializer_list>

#include "platform/Descriptor.hpp"

namespace quillo {

/// The set of these signals.
[[nodiscard]] sigset_t signalSet(std::initializer_list<int> signals);

/// [any] Can be read, without waiting, when one of the signals has come; they must be blocked in every
/// thread. Throws `std::system_error` when the system has no descriptor left.
[[nodiscard]] Descriptor openSignals(const sigset_t& signals);

}  // namespace quillo
