// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

#include "persistence/JSONReader.hpp"
#include "persistence/JSONWriter.hpp"
#include "persistence/RuleDescriptions.hpp"

namespace quillo {

/// Reads one persisted value, or a `std::vector` of them, in the current form by itself. `name` is what an
/// error calls it: with "rules", `rules[0].output: missing key "delay"`. Throws a `DecodingError`.
template <class T>
[[nodiscard]] T decode(const JSON& value, std::string_view name) {
    const JSONPath root;
    return JSONReader().read<T>(value, JSONPath(root, name));
}

/// Writes one persisted value, or a `std::vector` of them, by itself. Throws an `EncodingError`.
template <class T>
[[nodiscard]] std::string encode(const T& value) {
    JSONWriter writer;
    writer.write(value);
    return writer.text();
}

}  // namespace quillo
