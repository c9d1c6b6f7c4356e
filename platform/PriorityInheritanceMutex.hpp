// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <pthread.h>

namespace quillo {

/// A mutex whose holder runs, while others wait for it, with the priority of the most urgent of them (where
/// the platform offers that). Meets the standard's BasicLockable.
class PriorityInheritanceMutex {
public:
    PriorityInheritanceMutex();
    ~PriorityInheritanceMutex();
    PriorityInheritanceMutex(const PriorityInheritanceMutex&) = delete;
    PriorityInheritanceMutex& operator=(const PriorityInheritanceMutex&) = delete;

    void lock() noexcept;
    void unlock() noexcept;

private:
    pthread_mutex_t mutex_;
};

}  // namespace quillo
