// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <type_traits>

namespace quillo {

/// A pair of functions that turns a field's value into text and text back into a value. Parsing never fails:
/// what cannot be read becomes a value that the formatter chooses. Formatters have no state.
template <class Formatter>
concept MyFormatter =
    std::is_empty_v<Formatter> && std::equality_comparable<Formatter> &&
    requires(const Formatter formatter, const Formatter::Value value, std::string_view text) {
        { formatter.format(value) } -> std::same_as<std::string>;
        { formatter.parse(text) } -> std::same_as<typename Formatter::Value>;
    };

}  // namespace quillo
