// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

/// Enough of an Objective-C runtime to run the macOS shell on Linux: classes, categories, properties, blocks
/// and automatic reference counting, as Clang compiles them with `-fobjc-runtime=objfw`. Objects that are not
/// classes or constant strings are counted, so that a test can see that nothing is kept too long. What a
/// message without a method does is print its name and abort.
namespace quillo::test {

/// How many objects there are.
[[nodiscard]] std::size_t livingObjects();

/// How many references there are to a block that has been copied from the stack.
[[nodiscard]] std::size_t blockReferences(const void* block);

}  // namespace quillo::test

/// A pool of this thread: what is autoreleased from `push` on is released by `pop`.
extern "C" std::size_t objc_autoreleasePoolPush();
extern "C" void objc_autoreleasePoolPop(std::size_t pool);

/// A new object of this class, its fields made.
extern "C" void* quillo_makeObject(void* itsClass);

/// Whether the object's class is this one or comes of it.
extern "C" bool quillo_isKindOf(const void* object, const void* itsClass);
