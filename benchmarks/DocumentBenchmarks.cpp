// SPDX-License-Identifier: GPL-3.0-or-later
#include <string>

#include "benchmarks/BenchmarkRules.hpp"
#include "benchmarks/Sections.hpp"
#include "benchmarks/Table.hpp"
#include "persistence/PluginData.hpp"

namespace quillo::bench {

void addDocumentBenchmarks() {
    const Section section("State document", "rule");
    section.addFloor("copy the bytes of 1024 rules", 1024, [] {
        return [document = PluginData{mixedRules(1024)}.write()] {
            auto copy = document;
            benchmark::DoNotOptimize(copy);
        };
    });
    for (const auto count : Counts{16, 1024, 10000}) {
        section.addRow("read " + std::to_string(count) + " rules", count, [count] {
            return [document = PluginData{mixedRules(count)}.write()] {
                const auto data = PluginData::read(document);
                benchmark::DoNotOptimize(data.rules.data());
            };
        });
    }
    for (const auto count : Counts{16, 1024, 10000}) {
        section.addRow("write " + std::to_string(count) + " rules", count, [count] {
            return [data = PluginData{mixedRules(count)}] {
                const auto document = data.write();
                benchmark::DoNotOptimize(document.data());
            };
        });
    }
}

}  // namespace quillo::bench
