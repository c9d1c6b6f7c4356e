// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <thread>
#include <vector>

namespace quillo {

/// Threads that all run `body`, each with its own number from 0; joined at the end of the scope, which `body`
/// must outlive.
class Threads {
public:
    template <class Body>
    Threads(std::size_t count, const Body& body) {
        threads_.reserve(count);
        for (std::size_t number = 0; number < count; ++number) {
            threads_.emplace_back([&body, number] { body(number); });
        }
    }

private:
    std::vector<std::jthread> threads_;
};

}  // namespace quillo
