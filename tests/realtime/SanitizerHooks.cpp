// SPDX-License-Identifier: GPL-3.0-or-later
// In a build with a sanitizer the allocator is the sanitizer's, which calls back.
#include <cstddef>
#include <cstdlib>

#include "realtime/CallCounter.hpp"

using quillo::test::CallCounter;

extern "C" int installHooks(
    void (*onAllocation)(const volatile void* memory, std::size_t size),
    void (*onFree)(const volatile void* memory)) __asm__("__sanitizer_install_malloc_and_free_hooks");

namespace {

void onAllocation(const volatile void* /*memory*/, std::size_t /*size*/) {
    CallCounter::countAllocation();
}

void onFree(const volatile void* memory) {
    CallCounter::countFree(memory);
}

/// Installs the hooks before `main`; a program without them would find nothing and prove nothing.
const bool installed = [] {
    if (installHooks(&onAllocation, &onFree) == 0) {
        std::abort();
    }
    return true;
}();

}  // namespace
