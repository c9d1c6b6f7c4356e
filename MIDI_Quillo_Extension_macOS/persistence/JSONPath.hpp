// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillo {

/// Where a value lies in a document: a link to the place of the value around it. A reader passes it down for
/// the price of a pointer; the text is made only when something is wrong. Must not outlive the place around
/// it.
class JSONPath {
public:
    /// The whole document.
    JSONPath() = default;

    /// A member of an object.
    JSONPath(const JSONPath& object, std::string_view key) : parent_(&object), key_(key) {}

    /// An element of an array.
    JSONPath(const JSONPath& array, std::size_t index) : parent_(&array), index_(index) {}

    /// `rules[3].trigger`; empty for the whole document.
    [[nodiscard]] std::string text() const;

private:
    const JSONPath* parent_ = nullptr;
    std::string_view key_;
    std::optional<std::size_t> index_;  ///< of an element
};

}  // namespace quillo
