// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <string>

#include <nlohmann/json.hpp>

#include "persistence/JSONParser.hpp"

namespace quillo::test {

/// Whether a value fits a JSON Schema, as far as the schema of documents goes: types, ranges, enumerations,
/// properties, items, `anyOf` and `oneOf`.
class SchemaCheck {
public:
    [[nodiscard]] static bool fits(const JSON& value, const JSON& schema) {
        return hasType(value, schema) && hasRange(value, schema) && hasMembers(value, schema) &&
               hasItems(value, schema) && isOneOf(value, schema);
    }

private:
    /// What the schema has under a key; null where it has none.
    static const JSON* part(const JSON& schema, const char* key) {
        const auto found = schema.find(key);
        return found == schema.end() ? nullptr : &*found;
    }

    static bool hasType(const JSON& value, const JSON& schema) {
        const auto* type = part(schema, "type");
        return type == nullptr || (*type == "object" && value.is_object()) ||
               (*type == "array" && value.is_array()) || (*type == "string" && value.is_string()) ||
               (*type == "null" && value.is_null()) || (*type == "integer" && value.is_number_integer());
    }

    static bool hasRange(const JSON& value, const JSON& schema) {
        const auto* least = part(schema, "minimum");
        return !value.is_number() || least == nullptr || (value >= *least && value <= schema.at("maximum"));
    }

    static bool hasMembers(const JSON& value, const JSON& schema) {
        const auto isThere = [&](const JSON& key) { return value.contains(key.get<std::string>()); };
        const auto* required = part(schema, "required");
        if (value.is_object() && required != nullptr && !std::ranges::all_of(*required, isThere)) {
            return false;
        }
        const auto* properties = part(schema, "properties");
        if (!value.is_object() || properties == nullptr) {
            return true;
        }
        const auto fitsWhereThere = [&](const auto& property) {
            return !value.contains(property.key()) || fits(value.at(property.key()), property.value());
        };
        const auto items = properties->items();
        return std::all_of(items.begin(), items.end(), fitsWhereThere);
    }

    static bool hasItems(const JSON& value, const JSON& schema) {
        const auto* items = part(schema, "items");
        return !value.is_array() || items == nullptr ||
               std::ranges::all_of(value, [&](const JSON& item) { return fits(item, *items); });
    }

    static bool isOneOf(const JSON& value, const JSON& schema) {
        const auto fitting = [&](const JSON& choices) {
            return std::ranges::count_if(choices, [&](const JSON& choice) { return fits(value, choice); });
        };
        const auto* anyOf = part(schema, "anyOf");
        const auto* oneOf = part(schema, "oneOf");
        const auto* listed = part(schema, "enum");
        return (anyOf == nullptr || fitting(*anyOf) > 0) && (oneOf == nullptr || fitting(*oneOf) == 1) &&
               (listed == nullptr || std::ranges::find(*listed, value) != listed->end());
    }
};

}  // namespace quillo::test
