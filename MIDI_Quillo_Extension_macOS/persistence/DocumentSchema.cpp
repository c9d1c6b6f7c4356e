// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/DocumentSchema.hpp"

#include <limits>
#include <string_view>
#include <tuple>
#include <utility>

#include <nlohmann/json.hpp>

#include "persistence/PluginDataV3.hpp"
#include "persistence/RuleDescriptions.hpp"
#include "persistence/RuleV1Descriptions.hpp"

namespace quillo {

namespace {

using Schema = nlohmann::ordered_json;

template <class T>
Schema schemaOf();

/// An object that has these fields; others are ignored, as the reader does.
template <class Fields>
Schema objectOf(const Fields& fields) {
    Schema properties = Schema::object();
    Schema required = Schema::array();
    const auto add = [&]<class F>(const F& field) {
        const std::string key(field.key);
        if constexpr (isOptional<typename F::Value>) {
            properties[key]["anyOf"] = {schemaOf<typename F::Value::value_type>(), {{"type", "null"}}};
        } else {
            properties[key] = schemaOf<typename F::Value>();
            required.push_back(key);
        }
    };
    std::apply([&](const auto&... each) { (add(each), ...); }, fields);
    return {{"type", "object"}, {"properties", properties}, {"required", required}};
}

template <class Integer>
Schema integer() {
    using Limits = std::numeric_limits<Integer>;
    return {{"type", "integer"}, {"minimum", Limits::min()}, {"maximum", Limits::max()}};
}

/// Collects the cases of a union: an object that has exactly one of these keys.
class Cases {
public:
    void add(std::string_view name, Schema payload) {
        const std::string key(name);
        payloads_[key] = std::move(payload);
        choices_.push_back({{"required", Schema::array({key})}});
    }

    [[nodiscard]] Schema schema() const {
        return {{"type", "object"}, {"properties", payloads_}, {"oneOf", choices_}};
    }

private:
    Schema payloads_ = Schema::object();
    Schema choices_ = Schema::array();
};

template <class Union>
Schema oneOfTheCases() {
    Cases cases;
    std::apply([&](const auto&... each) { (cases.add(each.name, objectOf(each.payload)), ...); },
               Description<Union>::cases);
    return cases.schema();
}

template <class Enumeration>
Schema oneOfTheNames() {
    Cases cases;
    for (const auto& name : Description<Enumeration>::names) {
        cases.add(name, {{"type", "object"}});
    }
    return cases.schema();
}

template <class T>
Schema schemaOf() {
    if constexpr (StoredInteger<T>) {
        return integer<T>();
    } else if constexpr (std::same_as<T, std::string>) {
        return {{"type", "string"}};
    } else if constexpr (isVector<T>) {
        return {{"type", "array"}, {"items", schemaOf<typename T::value_type>()}};
    } else if constexpr (DescribedByFields<T>) {
        return objectOf(Description<T>::fields);
    } else if constexpr (DescribedByCases<T>) {
        return oneOfTheCases<T>();
    } else if constexpr (DescribedByNames<T>) {
        return oneOfTheNames<T>();
    } else {
        return {{"enum", Description<T>::numbers}};
    }
}

Schema titled(std::string_view title, Schema schema) {
    schema["title"] = title;
    return schema;
}

}  // namespace

std::string documentSchema() {
    Schema older{{"type", "array"}};
    older["items"]["anyOf"] = {titled("A rule without a name", schemaOf<RuleV2Helper>()),
                               titled("A rule of the oldest form", schemaOf<RuleV1>())};
    Schema schema{{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                  {"title", "A preset of MIDI Quillo"},
                  {"description", "The rules of MIDI Quillo, as presets and projects hold them."}};
    schema["anyOf"] = {titled("The current form", schemaOf<PluginDataV3>()),
                       titled("The forms before it", older)};
    return schema.dump(1) + '\n';
}

}  // namespace quillo
