// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace quillo {

/// A collection of log entries that can be emptied by `clear()`.
template <class Container>
concept LogContainer = requires(Container container) { container.clear(); };

static_assert(LogContainer<std::vector<int>>);

}  // namespace quillo
