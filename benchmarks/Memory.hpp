// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// How much memory an instance of a plug-in keeps, with the host around it that the benchmarks play.
namespace quillo::bench {

struct MemoryRow {
    std::string label;
    std::function<std::shared_ptr<void>()> make;  ///< an instance that has run a block
};

/// Prints a table of the kilobytes that each further instance keeps resident, as the average of 50.
void printMemory(const std::vector<MemoryRow>& rows);

}  // namespace quillo::bench
