// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "simulation/Scenario.hpp"

namespace quillo::test {

/// The scenario of this seed: the same one every time, with every compiler, whether its format was built or
/// not.
[[nodiscard]] Scenario makeScenario(std::uint64_t seed);

}  // namespace quillo::test
