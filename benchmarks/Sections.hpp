// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "benchmarks/Memory.hpp"

/// The sections of the table. Each function stands in the source of its name.
namespace quillo::bench {

/// Events through the processor and through the whole unit, and cycles without events.
void addEventBenchmarks();

/// Outputs that wait for their time.
void addDelayBenchmarks();

/// What hits, the note table and an open editor cost.
void addSessionBenchmarks();

/// Rule lists that are compiled and installed.
void addInstallBenchmarks();

/// State documents that are read and written.
void addDocumentBenchmarks();

/// What may be a mistake in rules, found.
void addAdviceBenchmarks();

/// The plug-in as LV2 hosts run it, beside those of other makers.
void addLV2Benchmarks();
[[nodiscard]] std::vector<MemoryRow> lv2Memory();

/// The plug-in as CLAP hosts run it.
void addCLAPBenchmarks();
[[nodiscard]] std::vector<MemoryRow> clapMemory();

/// The editor, with few rules and with many: opened, edited and scrolled.
void addEditorBenchmarks();

}  // namespace quillo::bench
