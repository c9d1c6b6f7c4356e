// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "simulation/Scenario.hpp"

namespace quillo::test {

/// The scenario of this seed: the same one every time, with the formats that were built.
[[nodiscard]] Scenario makeScenario(std::uint64_t seed);

}  // namespace quillo::test
