// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include <nlohmann/json.hpp>

#include "persistence/DecodingError.hpp"
#include "persistence/Description.hpp"
#include "persistence/JSONParser.hpp"

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

/// Reads values of described types from parsed JSON, strictly: no number is rounded or brought into range, no
/// type stands for another, nothing that is required has a default. Keys that nothing asks for are ignored.
/// Whatever does not fit throws a `DecodingError` that says where and what.
///
///     const auto delay = JSONReader().read<DelayV2>(json, JSONPath());
class JSONReader {
public:
    /// Reads a described type, an integer, a double, a Boolean, a string, or a `std::vector` of these. `path`
    /// says where `value` lies.
    template <class T>
    [[nodiscard]] T read(const JSON& value, const JSONPath& path);

    /// Fails unless `value` is an array.
    void requireArray(const JSON& value, const JSONPath& path);

    /// Fails unless `value` is an object.
    void requireObject(const JSON& value, const JSONPath& path);

    /// The value of a key that the object must have.
    const JSON& requireKey(const JSON& object, std::string_view key, const JSONPath& path);

    /// The error of a value that reads as nothing that is wanted: "expected a string, found 5".
    [[noreturn]] void failExpecting(const std::string& expected, const JSON& found, const JSONPath& path);

    /// Any other error of a value.
    [[noreturn]] void fail(const JSONPath& path, const std::string& what);

private:
    struct ChosenCase {
        std::size_t index;
        std::string_view name;
        const JSON& payload;  ///< an object
    };

    template <class Structure>
    Structure readFields(const JSON& value, const JSONPath& path);
    template <class Union>
    Union readUnion(const JSON& value, const JSONPath& path);
    template <class Enumeration>
    Enumeration readNamed(const JSON& value, const JSONPath& path);
    template <class Enumeration>
    Enumeration readNumbered(const JSON& value, const JSONPath& path);
    template <class Integer>
    Integer readInteger(const JSON& value, const JSONPath& path);
    template <class List>
    List readList(const JSON& value, const JSONPath& path);
    double readDouble(const JSON& value, const JSONPath& path);
    bool readBoolean(const JSON& value, const JSONPath& path);
    std::string readString(const JSON& value, const JSONPath& path);

    template <class Union, std::size_t Index>
    Union readCase(const JSON& payload, const JSONPath& path);
    template <class Value>
    Value readMember(const JSON& object, std::string_view key, const JSONPath& path,
                     const JSONPath& memberPath);

    ChosenCase chooseCase(std::span<const std::string_view> names, const JSON& value, const JSONPath& path);

    static std::string oneOf(std::span<const std::uint8_t> numbers);
    [[noreturn]] void failForCases(std::span<const std::string_view> names, const JSON& object,
                                   const JSONPath& path);

    std::size_t valuesRead_ = 0;  ///< values begun, the one that failed among them
};

/// The names of a union's cases, in order.
template <class Union>
inline constexpr auto caseNames =
    std::apply([](const auto&... each) { return std::array{each.name...}; }, Description<Union>::cases);

template <class T>
T JSONReader::read(const JSON& value, const JSONPath& path) {
    ++valuesRead_;
    if constexpr (StoredInteger<T>) {
        return readInteger<T>(value, path);
    } else if constexpr (std::same_as<T, double>) {
        return readDouble(value, path);
    } else if constexpr (std::same_as<T, bool>) {
        return readBoolean(value, path);
    } else if constexpr (std::same_as<T, std::string>) {
        return readString(value, path);
    } else if constexpr (isVector<T>) {
        return readList<T>(value, path);
    } else {
        static_assert(isWhole<T>());
        if constexpr (DescribedByFields<T>) {
            return readFields<T>(value, path);
        } else if constexpr (DescribedByCases<T>) {
            return readUnion<T>(value, path);
        } else if constexpr (DescribedByNames<T>) {
            return readNamed<T>(value, path);
        } else {
            return readNumbered<T>(value, path);
        }
    }
}

template <class Structure>
Structure JSONReader::readFields(const JSON& value, const JSONPath& path) {
    requireObject(value, path);
    const auto readField = [&]<class F>(const F& each) {
        return readMember<typename F::Value>(value, each.key, path, JSONPath(path, each.key));
    };
    return std::apply([&](const auto&... each) { return Structure{readField(each)...}; },
                      Description<Structure>::fields);
}

template <class Union>
Union JSONReader::readUnion(const JSON& value, const JSONPath& path) {
    constexpr auto readers = []<std::size_t... Indices>(std::index_sequence<Indices...>) {
        return std::array{&JSONReader::readCase<Union, Indices>...};
    }(std::make_index_sequence<caseNames<Union>.size()>());
    const auto chosen = chooseCase(caseNames<Union>, value, path);
    return (this->*readers[chosen.index])(chosen.payload, JSONPath(path, chosen.name));
}

/// The only element of a payload is spoken of under the name of its case; several have their own keys.
template <class Union, std::size_t Index>
Union JSONReader::readCase(const JSON& payload, const JSONPath& path) {
    static constexpr auto described = std::get<Index>(Description<Union>::cases);
    constexpr bool onlyOne = std::tuple_size_v<decltype(described.payload)> == 1;
    const auto readElement = [&]<class F>(const F& each) {
        return readMember<typename F::Value>(payload, each.key, path,
                                             onlyOne ? path : JSONPath(path, each.key));
    };
    return std::apply(
        [&](const auto&... each) { return typename decltype(described)::Case{readElement(each)...}; },
        described.payload);
}

template <class Value>
Value JSONReader::readMember(const JSON& object, std::string_view key, const JSONPath& path,
                             const JSONPath& memberPath) {
    if constexpr (isOptional<Value>) {
        const auto member = object.find(key);
        if (member == object.end() || member->is_null()) {
            return std::nullopt;
        }
        return read<typename Value::value_type>(*member, memberPath);
    } else {
        return read<Value>(requireKey(object, key, path), memberPath);
    }
}

template <class Enumeration>
Enumeration JSONReader::readNamed(const JSON& value, const JSONPath& path) {
    return static_cast<Enumeration>(chooseCase(Description<Enumeration>::names, value, path).index);
}

template <class Enumeration>
Enumeration JSONReader::readNumbered(const JSON& value, const JSONPath& path) {
    constexpr auto& numbers = Description<Enumeration>::numbers;
    const auto isValue = [&](auto number) { return value.is_number_unsigned() && value == JSON(number); };
    const auto found = std::ranges::find_if(numbers, isValue);
    if (found == numbers.end()) {
        failExpecting(oneOf(numbers), value, path);
    }
    return static_cast<Enumeration>(found - numbers.begin());
}

template <class Integer>
Integer JSONReader::readInteger(const JSON& value, const JSONPath& path) {
    using Limits = std::numeric_limits<Integer>;
    if (value.is_number_unsigned() && std::in_range<Integer>(value.get<std::uint64_t>())) {
        return value.get<Integer>();
    }
    const bool isNegative = value.is_number_integer() && !value.is_number_unsigned();
    if (isNegative && std::in_range<Integer>(value.get<std::int64_t>())) {
        return value.get<Integer>();
    }
    failExpecting("a whole number from " + std::to_string(Limits::min()) + " to " +
                      std::to_string(Limits::max()),
                  value, path);
}

template <class List>
List JSONReader::readList(const JSON& value, const JSONPath& path) {
    requireArray(value, path);
    List list;
    list.reserve(value.size());
    for (const auto& element : value) {
        list.push_back(read<typename List::value_type>(element, JSONPath(path, list.size())));
    }
    return list;
}

}  // namespace quillo
