// SPDX-License-Identifier: GPL-3.0-or-later
// The allocator's functions, defined in the program and therefore taken by all its libraries, each in front
// of the C library's own.
#include <cerrno>
#include <cstddef>

#include "realtime/CallCounter.hpp"

using quillo::test::CallCounter;

extern "C" {

void* systemMalloc(std::size_t size) noexcept __asm__("__libc_malloc");
void* systemCalloc(std::size_t count, std::size_t size) noexcept __asm__("__libc_calloc");
void* systemRealloc(void* memory, std::size_t size) noexcept __asm__("__libc_realloc");
void* systemMemalign(std::size_t alignment, std::size_t size) noexcept __asm__("__libc_memalign");
void systemFree(void* memory) noexcept __asm__("__libc_free");

void* malloc(std::size_t size) noexcept {
    CallCounter::countAllocation();
    return systemMalloc(size);
}

void* calloc(std::size_t count, std::size_t size) noexcept {
    CallCounter::countAllocation();
    return systemCalloc(count, size);
}

void* realloc(void* memory, std::size_t size) noexcept {
    CallCounter::countAllocation();
    CallCounter::countFree(memory);
    return systemRealloc(memory, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    CallCounter::countAllocation();
    return systemMemalign(alignment, size);
}

void* memalign(std::size_t alignment, std::size_t size) noexcept {
    return aligned_alloc(alignment, size);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) noexcept {
    *memory = aligned_alloc(alignment, size);
    return *memory == nullptr ? ENOMEM : 0;
}

void free(void* memory) noexcept {
    CallCounter::countFree(memory);
    systemFree(memory);
}

}  // extern "C"
