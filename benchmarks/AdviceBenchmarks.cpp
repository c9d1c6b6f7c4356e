// SPDX-License-Identifier: GPL-3.0-or-later
#include <string>

#include "analysis/RuleAdvice.hpp"
#include "benchmarks/BenchmarkRules.hpp"
#include "benchmarks/Sections.hpp"
#include "benchmarks/Table.hpp"

namespace quillo::bench {

void addAdviceBenchmarks() {
    const Section section("Advice", "rule");
    section.addFloor("copy 1000 rules", 1000, [] {
        return [rules = mixedRules(1000)] {
            auto copy = rules;
            benchmark::DoNotOptimize(copy);
        };
    });
    for (const auto count : Counts{100, 1000, 10000}) {
        section.addRow("advise on " + std::to_string(count) + " rules", count, [count] {
            return [rules = mixedRules(count)] {
                const auto advice = adviseOn(rules);
                benchmark::DoNotOptimize(advice.data());
            };
        });
    }
}

}  // namespace quillo::bench
