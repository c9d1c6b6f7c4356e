// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

#include "simulation/Scenario.hpp"

namespace quillo::test {

struct Outcome {
    std::optional<std::string> failure;  ///< the first one, in a line
    double seconds = 0.0;                ///< simulated
};

/// Plays a scenario to the instance and to the slow model, and compares them after every block.
[[nodiscard]] Outcome simulate(const Scenario& scenario);

/// The smallest scenario found that fails too.
[[nodiscard]] Scenario shrink(Scenario scenario);

}  // namespace quillo::test
