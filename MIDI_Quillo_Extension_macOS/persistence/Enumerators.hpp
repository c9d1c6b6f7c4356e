// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

namespace quillo {

/// Whether an enumeration has an enumerator of this value. The compiler knows, and tells in the name that it
/// gives a function made for the value: `Value = PassThroughV2::EatMatching`, but `Value = (PassThroughV2)3`.
template <auto Value>
consteval bool isEnumerator() {
    constexpr std::string_view name = __PRETTY_FUNCTION__;
    constexpr std::string_view beforeValue = "Value = ";
    return name[name.find(beforeValue) + beforeValue.size()] != '(';
}

/// Whether an enumeration's enumerators are exactly 0 to `Count` - 1.
template <class Enumeration, std::size_t Count>
consteval bool hasEnumerators() {
    constexpr bool allNamed = []<std::size_t... Values>(std::index_sequence<Values...>) {
        return (isEnumerator<static_cast<Enumeration>(Values)>() && ...);
    }(std::make_index_sequence<Count>());
    return allNamed && !isEnumerator<static_cast<Enumeration>(Count)>();
}

}  // namespace quillo
