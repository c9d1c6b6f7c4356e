// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

#include "persistence/JSONReader.hpp"
#include "persistence/RuleDescriptions.hpp"

namespace quillo {

/// The keys of an object in a script, read strictly: a value of another type, null included, is an error that
/// says where. Throws `DecodingError`. Must not outlive the object or its path.
///
///     const ScriptKeys keys(object, path);
///     const auto frames = keys.require<std::uint32_t>("frames");
///     const auto channels = keys.valueOr<std::uint32_t>("inputChannels", 2);
class ScriptKeys {
public:
    /// Fails unless `value` is an object.
    ScriptKeys(const JSON& value, const JSONPath& path) : object_(value), path_(path) {
        JSONReader().requireObject(value, path);
    }

    [[nodiscard]] bool has(std::string_view key) const { return object_.contains(key); }

    /// The value of a key that must be there.
    [[nodiscard]] const JSON& at(std::string_view key) const {
        return JSONReader().requireKey(object_, key, path_);
    }

    /// Where the value of a key lies.
    [[nodiscard]] JSONPath pathOf(std::string_view key) const { return {path_, key}; }

    /// The value of a key that must be there, as a described type, a number, a Boolean, a string or a list.
    template <class T>
    [[nodiscard]] T require(std::string_view key) const {
        return JSONReader().read<T>(at(key), pathOf(key));
    }

    /// The same, or `fallback` when the key is not there.
    template <class T>
    [[nodiscard]] T valueOr(std::string_view key, T fallback) const {
        return has(key) ? require<T>(key) : fallback;
    }

    /// Fails for the whole object.
    [[noreturn]] void fail(const std::string& what) const { JSONReader().fail(path_, what); }

private:
    const JSON& object_;
    const JSONPath& path_;
};

}  // namespace quillo
