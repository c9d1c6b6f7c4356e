// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Descriptor.hpp"

namespace quillo {

/// Wakes the main thread's event loop from another thread, which never waits: as many wakes as there may be
/// before the loop looks are one.
class WakeDescriptor {
public:
    /// Throws `std::system_error` when the system has none left.
    WakeDescriptor();

    /// [any, signal handlers too]
    void wake() const noexcept;

    /// Can be read when there is something to look at.
    [[nodiscard]] int number() const { return descriptor_.number(); }

    /// [main] Forgets the wakes so far.
    void clear() const noexcept;

private:
    Descriptor descriptor_;
};

}  // namespace quillo
