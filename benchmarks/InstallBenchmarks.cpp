// SPDX-License-Identifier: GPL-3.0-or-later
#include <memory>
#include <string>
#include <vector>

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
    const auto addWorst = [&](const std::string& row, const std::vector<Rule>& rules) {
        section.addRow(row, rules.size(), [rules] {
            return [rules, processor = std::make_shared<RuleProcessor>()] { processor->setRules(rules); };
        });
    };
    addWorst("the same, 10000 rules for any note", wildcardRules(10000, PassThroughV2::PassThrough));
    addWorst("the same, 10000 rules for any note and 1000 for single ones",
             wildcardAndSingleRules(10000, 1000));
    addWorst("the same, 10000 values of every controller of every channel", rulesOfEveryController(10000));
}

}  // namespace quillo::bench
