// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/Table.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string_view>

namespace quillo::bench {

namespace {

constexpr int repetitions = 5;
constexpr double secondsEach = 0.03;
constexpr std::string_view separator = " | ";
constexpr std::string_view floorPrefix = "floor: ";
constexpr const char* rowFormat = "  %-58s %12.1f %9.1f %8.1f %%\n";
constexpr const char* headFormat = "\n%-60s %12s %9s %10s\n";

/// The nanoseconds per item of each repetition, ascending.
std::vector<double> timesOf(const std::vector<benchmark::BenchmarkReporter::Run>& runs) {
    std::vector<double> times;
    for (const auto& run : runs) {
        if (run.run_type == benchmark::BenchmarkReporter::Run::RT_Iteration) {
            times.push_back(1e9 / run.counters.at("items_per_second").value);
        }
    }
    std::ranges::sort(times);
    return times;
}

}  // namespace

void Section::addFloor(const std::string& row, std::size_t items,
                       const std::function<Step()>& prepare) const {
    addRow(std::string(floorPrefix) + row, items, prepare);
}

void Section::addRow(const std::string& row, std::size_t items, const std::function<Step()>& prepare) const {
    const auto measure = [prepare, items](benchmark::State& state) {
        const auto step = prepare();
        for ([[maybe_unused]] auto iteration : state) {
            step();
        }
        state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(items));
    };
    benchmark::RegisterBenchmark((name_ + std::string(separator) + row).c_str(), measure)
        ->Repetitions(repetitions)
        ->MinTime(secondsEach);
}

bool TableReporter::ReportContext(const Context& context) {
    std::printf("%d processors at %.0f MHz; processor time, median of %d repetitions\n",
                context.cpu_info.num_cpus, context.cpu_info.cycles_per_second / 1e6, repetitions);
    return true;
}

void TableReporter::ReportRuns(const std::vector<Run>& runs) {
    const auto times = timesOf(runs);
    if (times.empty()) {
        return;
    }
    const auto& name = runs.front().run_name.function_name;
    const auto cut = name.find(separator);
    if (const auto section = name.substr(0, cut); section != section_) {
        startSection(section);
    }
    printRow(name.substr(cut + separator.size()), times);
}

void TableReporter::printRow(const std::string& row, const std::vector<double>& times) {
    const auto median = times[times.size() / 2];
    if (row.starts_with(floorPrefix)) {
        floor_ = median;
    }
    const auto spread = (times.back() - times.front()) / 2.0 / median;
    std::printf(rowFormat, row.c_str(), median, median / floor_, 100.0 * spread);
    std::fflush(stdout);
}

void TableReporter::startSection(const std::string& section) {
    section_ = section;
    floor_ = std::numeric_limits<double>::quiet_NaN();
    std::printf(headFormat, section.c_str(), "ns", "x floor", "spread");
}

}  // namespace quillo::bench
