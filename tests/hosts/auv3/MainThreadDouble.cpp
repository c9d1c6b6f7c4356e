// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/MainThreadDouble.hpp"

#include <functional>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "hosts/auv3/MainThread.hpp"

namespace quillo {

namespace {

const std::thread::id mainThread = std::this_thread::get_id();
std::mutex mutex;
std::vector<std::function<void()>> waiting;

}  // namespace

bool isMainThread() {
    return std::this_thread::get_id() == mainThread;
}

void runOnMainThread(std::function<void()> block) {
    const std::lock_guard lock(mutex);
    waiting.push_back(std::move(block));
}

namespace test {

std::size_t runMainThread() {
    std::size_t ran = 0;
    for (;;) {
        std::vector<std::function<void()>> blocks;
        {
            const std::lock_guard lock(mutex);
            blocks.swap(waiting);
        }
        if (blocks.empty()) {
            return ran;
        }
        for (const auto& block : blocks) {
            block();
            ++ran;
        }
    }
}

}  // namespace test

}  // namespace quillo
