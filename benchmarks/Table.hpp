// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// The benchmarks as one table: a section for each thing measured, each row beside the section's floor.
namespace quillo::bench {

/// Work that is repeated until its time is known.
using Step = std::function<void()>;

/// A part of the table whose rows are compared with its first one, the floor: the least that anybody who does
/// such a thing must do.
class Section {
public:
    /// `item` is what the times are given for: "event", "rule".
    Section(std::string title, std::string item) : name_(std::move(title) + ", ns per " + std::move(item)) {}

    /// Adds a row. `prepare` makes the step and all that it works on; the step handles `items` items.
    void addRow(const std::string& row, std::size_t items, const std::function<Step()>& prepare) const;

    /// The same for the section's first row.
    void addFloor(const std::string& row, std::size_t items, const std::function<Step()>& prepare) const;

private:
    std::string name_;
};

/// Prints the table while its rows are measured: of each row the median of several repetitions, its ratio to
/// the section's floor, and the spread: half of what lies between the fastest and the slowest repetition.
class TableReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;

private:
    void startSection(const std::string& section);
    void printRow(const std::string& row, const std::vector<double>& times);

    std::string section_;
    double floor_ = 0.0;
};

}  // namespace quillo::bench
