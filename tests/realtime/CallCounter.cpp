// SPDX-License-Identifier: GPL-3.0-or-later
#include "realtime/CallCounter.hpp"

#include <ostream>
#include <utility>

namespace quillo::test {

namespace {

/// Of the innermost scope of this thread; null outside of all scopes.
thread_local CallCounts* current = nullptr;

}  // namespace

CallCounts& CallCounts::operator+=(const CallCounts& more) {
    allocations += more.allocations;
    frees += more.frees;
    locks += more.locks;
    return *this;
}

CallCounter::Scope::Scope() noexcept : outer_(std::exchange(current, &counts_)) {}

CallCounter::Scope::~Scope() {
    current = outer_;
}

void CallCounter::countAllocation() noexcept {
    if (current != nullptr) {
        ++current->allocations;
    }
}

void CallCounter::countFree(const volatile void* memory) noexcept {
    if (current != nullptr && memory != nullptr) {
        ++current->frees;
    }
}

void CallCounter::countLock() noexcept {
    if (current != nullptr) {
        ++current->locks;
    }
}

void PrintTo(const CallCounts& counts, std::ostream* out) {
    *out << counts.allocations << " allocations, " << counts.frees << " frees, " << counts.locks << " locks";
}

}  // namespace quillo::test
