// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/JSONReader.hpp"

#include <algorithm>
#include <iterator>
#include <vector>

namespace quillo {

namespace {

/// Stands in front of every error about an object that has not exactly one case, word for word.
constexpr std::string_view notOneCase = "Invalid number of keys found, expected one.";

std::string located(const JSONPath& path, const std::string& what) {
    const auto where = path.text();
    return where.empty() ? what : where + ": " + what;
}

std::string describe(const JSON& value) {
    switch (value.type()) {
    case JSON::value_t::object: return "an object";
    case JSON::value_t::array: return "an array";
    case JSON::value_t::string: return "a string";
    case JSON::value_t::null:
    case JSON::value_t::boolean:
    case JSON::value_t::number_integer:
    case JSON::value_t::number_unsigned:
    case JSON::value_t::number_float: return value.dump();
    case JSON::value_t::binary:
    case JSON::value_t::discarded: break;
    }
    return "something else";
}

std::string listed(std::span<const std::string_view> names, std::string_view separator) {
    std::string text;
    for (const auto name : names) {
        text += (text.empty() ? "" : std::string(separator)) + "\"" + std::string(name) + "\"";
    }
    return text;
}

}  // namespace

std::string JSONPath::text() const {
    if (parent_ == nullptr) {
        return {};
    }
    const auto around = parent_->text();
    if (index_) {
        return around + "[" + std::to_string(*index_) + "]";
    }
    return around + (around.empty() ? "" : ".") + std::string(key_);
}

double JSONReader::readDouble(const JSON& value, const JSONPath& path) {
    if (!value.is_number()) {
        failExpecting("a number", value, path);
    }
    return value.get<double>();
}

bool JSONReader::readBoolean(const JSON& value, const JSONPath& path) {
    if (!value.is_boolean()) {
        failExpecting("true or false", value, path);
    }
    return value.get<bool>();
}

std::string JSONReader::readString(const JSON& value, const JSONPath& path) {
    if (!value.is_string()) {
        failExpecting("a string", value, path);
    }
    return value.get_ref<const std::string&>();
}

JSONReader::ChosenCase JSONReader::chooseCase(std::span<const std::string_view> names, const JSON& value,
                                              const JSONPath& path) {
    requireObject(value, path);
    const auto isThere = [&](std::string_view name) { return value.contains(name); };
    if (std::ranges::count_if(names, isThere) != 1) {
        failForCases(names, value, path);
    }
    const auto chosen = std::ranges::find_if(names, isThere);
    const auto& payload = *value.find(*chosen);
    requireObject(payload, JSONPath(path, *chosen));
    return {static_cast<std::size_t>(chosen - names.begin()), *chosen, payload};
}

void JSONReader::requireArray(const JSON& value, const JSONPath& path) {
    if (!value.is_array()) {
        failExpecting("an array", value, path);
    }
}

void JSONReader::requireObject(const JSON& value, const JSONPath& path) {
    if (!value.is_object()) {
        failExpecting("an object", value, path);
    }
}

const JSON& JSONReader::requireKey(const JSON& object, std::string_view key, const JSONPath& path) {
    const auto member = object.find(key);
    if (member == object.end()) {
        fail(path, "missing key \"" + std::string(key) + "\"");
    }
    return *member;
}

std::string JSONReader::oneOf(std::span<const std::uint8_t> numbers) {
    std::string text = "one of ";
    for (const auto number : numbers) {
        text += number == numbers.front() ? "" : ", ";
        text += std::to_string(number);
    }
    return text;
}

void JSONReader::fail(const JSONPath& path, const std::string& what) {
    throw DecodingError(located(path, what), path.text(), what, valuesRead_);
}

void JSONReader::failExpecting(const std::string& expected, const JSON& found, const JSONPath& path) {
    fail(path, "expected " + expected + ", found " + describe(found));
}

void JSONReader::failForCases(std::span<const std::string_view> names, const JSON& object,
                              const JSONPath& path) {
    std::vector<std::string_view> found;
    std::ranges::copy_if(names, std::back_inserter(found), [&](auto name) { return object.contains(name); });
    const auto detail =
        found.empty() ? "expected " + listed(names, " or ") : "found " + listed(found, " and ");
    const auto message = std::string(notOneCase) + " ";
    throw DecodingError(message + located(path, detail), path.text(), message + detail, valuesRead_);
}

}  // namespace quillo
