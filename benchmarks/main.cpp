// SPDX-License-Identifier: GPL-3.0-or-later
// quillo-bench: measures the engine and prints one table. Takes Google Benchmark's options, such as
// --benchmark_filter=REGEX.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <iterator>
#include <vector>

#include "benchmarks/Sections.hpp"
#include "benchmarks/Table.hpp"

int main(int count, char** arguments) {
    using namespace quillo::bench;
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments)) {
        return 64;
    }
    addEventBenchmarks();
    addDelayBenchmarks();
    addSessionBenchmarks();
    addInstallBenchmarks();
    addDocumentBenchmarks();
    addAdviceBenchmarks();
    std::vector<MemoryRow> memory;
#ifdef QUILLO_HAS_LV2
    addLV2Benchmarks();
    std::ranges::copy(lv2Memory(), std::back_inserter(memory));
#endif
#ifdef QUILLO_HAS_CLAP
    addCLAPBenchmarks();
    std::ranges::copy(clapMemory(), std::back_inserter(memory));
#endif
#ifdef QUILLO_HAS_EDITOR
    addEditorBenchmarks();
#endif
    TableReporter table;
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
    printMemory(memory);
    return 0;
}
