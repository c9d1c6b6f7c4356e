// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <variant>

#include "persistence/Description.hpp"

namespace quillo {

/// Writes values of described types as JSON: compact, keys in the described order, slashes in strings
/// escaped, characters beyond ASCII as they are. The same value always gives the same bytes.
///
///     JSONWriter writer;
///     writer.write(DelayV2{250});
///     writer.text();  // {"ms":250}
class JSONWriter {
public:
    /// Appends a described type, an integer, a string, or a `std::vector` of these. Throws an `EncodingError`
    /// for a string that is not valid UTF-8; what was written is of no use then.
    template <class T>
    void write(const T& value);

    [[nodiscard]] const std::string& text() const { return text_; }

private:
    template <class Structure, class Fields>
    void writeFields(const Structure& structure, const Fields& fields);
    template <class Union>
    void writeUnion(const Union& value);
    template <class List>
    void writeList(const List& list);
    template <class Value>
    void writeMember(std::string_view key, const Value& value);

    void writeString(std::string_view string);
    void writeKey(std::string_view key);
    void separate();

    std::string text_;
};

template <class T>
void JSONWriter::write(const T& value) {
    if constexpr (StoredInteger<T>) {
        text_ += std::to_string(value);
    } else if constexpr (std::same_as<T, std::string>) {
        writeString(value);
    } else if constexpr (isVector<T>) {
        writeList(value);
    } else {
        static_assert(isWhole<T>());
        if constexpr (DescribedByFields<T>) {
            writeFields(value, Description<T>::fields);
        } else if constexpr (DescribedByCases<T>) {
            writeUnion(value);
        } else if constexpr (DescribedByNames<T>) {
            text_ += '{';
            writeKey(Description<T>::names[static_cast<std::size_t>(value)]);
            text_ += "{}}";
        } else {
            write(Description<T>::numbers[static_cast<std::size_t>(value)]);
        }
    }
}

template <class Structure, class Fields>
void JSONWriter::writeFields(const Structure& structure, const Fields& fields) {
    text_ += '{';
    std::apply([&](const auto&... each) { (writeMember(each.key, structure.*each.member), ...); }, fields);
    text_ += '}';
}

template <class Union>
void JSONWriter::writeUnion(const Union& value) {
    const auto writeIfHeld = [&]<class C>(const C& each) {
        if (const auto* held = value.template getIf<typename C::Case>()) {
            writeKey(each.name);
            writeFields(*held, each.payload);
        }
    };
    text_ += '{';
    std::apply([&](const auto&... each) { (writeIfHeld(each), ...); }, Description<Union>::cases);
    text_ += '}';
}

template <class List>
void JSONWriter::writeList(const List& list) {
    text_ += '[';
    for (const auto& element : list) {
        separate();
        write(element);
    }
    text_ += ']';
}

template <class Value>
void JSONWriter::writeMember(std::string_view key, const Value& value) {
    if constexpr (isOptional<Value>) {
        if (value) {
            writeMember(key, *value);
        }
    } else {
        separate();
        writeKey(key);
        write(value);
    }
}

/// One persisted value, or a `std::vector` of them, by itself. Throws an `EncodingError`.
template <class T>
[[nodiscard]] std::string encode(const T& value) {
    JSONWriter writer;
    writer.write(value);
    return writer.text();
}

}  // namespace quillo
