// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "rules/Rule.hpp"
#include "rules/RuleShelf.hpp"

namespace quillo {

/// The state document, which is also a preset file: the rule list as the rest of the system sees it.
///
/// Three forms of the document are read: an object with the key "rules" (the current one), and bare arrays of
/// nameless rules of the two forms before it, which may be mixed. Only the current form is written.
struct PluginData {
    std::vector<Rule> rules;
    RuleShelf shelf = {};  ///< rules that are switched off; only in the current form

    bool operator==(const PluginData&) const = default;

    /// Reads a document of any form, all of it or nothing. Nameless rules are named by their position:
    /// "Message #1" is the first. Throws a `DecodingError`; a pitch above 255 in the oldest form is a fatal
    /// error.
    [[nodiscard]] static PluginData read(std::span<const std::uint8_t> document);

    /// The document in UTF-8: compact, without a byte-order mark and without a line break at the end. Throws
    /// an `EncodingError` when a name is not valid UTF-8.
    [[nodiscard]] std::vector<std::uint8_t> write() const;
};

/// A document that was read, and what it looked like.
struct ReadDocument {
    enum class Form {
        current,   ///< an object with the key "rules"
        bareArray  ///< an array of nameless rules
    };

    PluginData data;
    Form form = Form::current;
    std::size_t migratedRules = 0;  ///< how many of a bare array's rules were in the oldest form
};

/// `PluginData::read` for a program that also describes the document to its user.
[[nodiscard]] ReadDocument readDocument(std::span<const std::uint8_t> document);

}  // namespace quillo

/// Equal rule lists have equal hashes. Names must be valid UTF-8.
template <>
struct std::hash<quillo::PluginData> {
    std::size_t operator()(const quillo::PluginData& data) const;
};
