// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <numeric>
#include <utility>
#include <vector>

namespace quillo {

/// The elements in ascending order of their keys, those with equal keys in the order that they had.
///
/// It sorts positions: the standard library's own stable sort uses a function that the standard has given up,
/// and a compiler warns of it.
template <class Element, class Key>
[[nodiscard]] std::vector<Element> inStableOrder(std::vector<Element> elements, Key key) {
    std::vector<std::size_t> positions(elements.size());
    std::iota(positions.begin(), positions.end(), std::size_t{0});
    std::ranges::sort(positions, {}, [&](std::size_t position) {
        return std::pair(std::invoke(key, elements[position]), position);
    });
    std::vector<Element> ordered;
    ordered.reserve(elements.size());
    for (const auto position : positions) {
        ordered.push_back(std::move(elements[position]));
    }
    return ordered;
}

}  // namespace quillo
