// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

namespace quillo::test {

/// The main thread of a program whose platform runs nothing by itself: the thread that starts the program,
/// and blocks that wait until a test runs them. A program that includes this has it in the place of the
/// platform's.
///
/// Runs what waits for the main thread, and what comes of it; returns how many blocks it was.
std::size_t runMainThread();

}  // namespace quillo::test
