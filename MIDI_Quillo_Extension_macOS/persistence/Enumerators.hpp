// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

namespace quillo {

/// Whether an enumeration has an enumerator of this value. The compiler knows,
/// and tells in the name that it gives a function made for the value: `value =
/// PassThroughV2::EatMatching`, but `value = (PassThroughV2)3`.
template <auto value>
consteval bool isEnumerator() {
    constexpr std::string_view name = __PRETTY_FUNCTION__;
    constexpr std::string_view beforeValue = "value = ";
    return name[name.find(beforeValue) + beforeValue.size()] != '(';
}

/// Whether an enumeration's enumerators are exactly 0 to `count` - 1.
template <class Enumeration, std::size_t count>
consteval bool hasEnumerators() {
    constexpr bool allNamed = []<std::size_t... values>(std::index_sequence<values...>) {
        return (isEnumerator<static_cast<Enumeration>(values)>() && ...);
    }(std::make_index_sequence<count>());
    return allNamed && !isEnumerator<static_cast<Enumeration>(count)>();
}

}  // namespace quillo
