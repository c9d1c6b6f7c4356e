// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/Memory.hpp"

#include <unistd.h>

#include <cstdio>
#include <fstream>

namespace quillo::bench {

namespace {

double residentKilobytes() {
    std::ifstream statistics("/proc/self/statm");
    long all = 0;
    long resident = 0;
    statistics >> all >> resident;
    return static_cast<double>(resident) * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1024.0;
}

/// What only the first instance needs is not counted.
double kilobytesEach(const MemoryRow& row) {
    constexpr int count = 50;
    std::vector<std::shared_ptr<void>> instances{row.make()};
    const auto before = residentKilobytes();
    for (int made = 0; made < count; ++made) {
        instances.push_back(row.make());
    }
    return (residentKilobytes() - before) / count;
}

}  // namespace

void printMemory(const std::vector<MemoryRow>& rows) {
    std::printf("\n%-60s %12s\n", "Memory of an instance in its host, resident", "KB");
    for (const auto& row : rows) {
        std::printf("  %-58s %12.0f\n", row.label.c_str(), kilobytesEach(row));
    }
}

}  // namespace quillo::bench
