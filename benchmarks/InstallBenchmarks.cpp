// SPDX-License-Identifier: GPL-3.0-or-later
#include <memory>
#include <string>

#include "benchmarks/BenchmarkRules.hpp"
#include "benchmarks/Sections.hpp"
#include "benchmarks/Table.hpp"
#include "engine/RuleProcessor.hpp"

namespace quillo::bench {

void addInstallBenchmarks() {
    const Section section("Installing rules", "rule");
    section.addFloor("copy 1024 rules", 1024, [] {
        return [rules = mixedRules(1024)] {
            auto copy = rules;
            benchmark::DoNotOptimize(copy);
        };
    });
    for (const auto count : Counts{16, 128, 1024, 10000}) {
        section.addRow("copy, compile and install " + std::to_string(count) + " rules", count, [count] {
            return [rules = mixedRules(count), processor = std::make_shared<RuleProcessor>()] {
                processor->setRules(rules);
            };
        });
    }
}

}  // namespace quillo::bench
