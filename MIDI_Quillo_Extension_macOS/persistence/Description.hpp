// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace quillo {

/// Whether an enumeration has an enumerator of this value. The compiler knows, and shows it in the name that
/// it gives a function made for the value: `Value = PassThroughV2::EatMatching`, but `Value =
/// (PassThroughV2)3`.
template <auto Value>
consteval bool isEnumerator() {
    constexpr std::string_view name = __PRETTY_FUNCTION__;
    constexpr std::string_view beforeValue = "Value = ";
    return name[name.find(beforeValue) + beforeValue.size()] != '(';
}

/// Whether an enumeration's enumerators are exactly 0 to `Count` - 1.
template <class Enumeration, std::size_t Count>
consteval bool hasEnumerators() {
    constexpr bool allNamed = []<std::size_t... Values>(std::index_sequence<Values...>) {
        return (isEnumerator<static_cast<Enumeration>(Values)>() && ...);
    }(std::make_index_sequence<Count>());
    return allNamed && !isEnumerator<static_cast<Enumeration>(Count)>();
}

/// How a persisted type is stored, said once for reading and writing. A type is described in one of four
/// ways, always in its declared order:
///
///     // A structure: an object with these keys.
///     template <> struct Description<DelayV2> {
///         static constexpr std::tuple fields{field("ms", &DelayV2::ms)};
///     };
///     // A tagged union: an object with one of these keys; its value is an object with the payload's
///     // elements under the keys "_0", "_1", "_2".
///     template <> struct Description<GenericByteV2> {
///         static constexpr std::tuple cases{
///             unionCase<GenericByteV2::Value>("Value", &GenericByteV2::Value::value),
///             unionCase<GenericByteV2::RespectiveTriggerByte>("RespectiveTriggerByte")};
///     };
///     // An enumeration: as a union whose cases have no payload.
///     template <> struct Description<PassThroughV2> {
///         static constexpr std::array<std::string_view, 3> names{"PassThrough", "EatMatching",
///                                                                "EatNonMatching"};
///     };
///     // An enumeration that is stored as a number.
///     template <> struct Description<StatusV2> {
///         static constexpr auto numbers = statusNibbles;
///     };
///
/// A field of type `std::optional` is left out when it is absent. A description that leaves out a field or a
/// case, or has the cases in another order, does not compile.
template <class T>
struct Description;

/// A member of a structure and its key.
template <class Structure, class Member>
struct Field {
    using Value = Member;

    std::string_view key;
    Member Structure::* member;
};

template <class Structure, class Member>
consteval Field<Structure, Member> field(std::string_view key, Member Structure::* member) {
    return {key, member};
}

/// The keys of a payload's elements, in order.
inline constexpr std::array<std::string_view, 3> payloadKeys{"_0", "_1", "_2"};

/// A case of a tagged union, its name and its payload.
template <class CaseType, class... Members>
struct UnionCase {
    using Case = CaseType;
    using Payload = std::tuple<Field<Case, Members>...>;

    std::string_view name;
    Payload payload;
};

template <class Case, class... Members>
consteval UnionCase<Case, Members...> unionCase(std::string_view name, Members Case::*... members) {
    static_assert(sizeof...(Members) <= payloadKeys.size());
    std::size_t position = 0;
    return {name, {Field<Case, Members>{payloadKeys[position++], members}...}};
}

template <class T>
concept DescribedByFields = requires { Description<T>::fields; };
template <class T>
concept DescribedByCases = requires { Description<T>::cases; };
template <class T>
concept DescribedByNames = requires { Description<T>::names; };
template <class T>
concept DescribedByNumbers = requires { Description<T>::numbers; };

/// An integer that is stored as a number in its own range.
template <class T>
concept StoredInteger = std::integral<T> && !std::same_as<T, bool>;

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<std::optional<T>> = true;

template <class T>
inline constexpr bool isVector = false;
template <class T>
inline constexpr bool isVector<std::vector<T>> = true;

/// Stands for a value of any type where nothing is evaluated.
struct ValueOfAnyType {
    template <class T>
    operator T() const;
};

/// Whether a tuple of fields names all members of the structure.
template <class Structure, class Fields>
inline constexpr bool coversMembers = false;
template <class Structure, class... Members>
inline constexpr bool coversMembers<Structure, std::tuple<Field<Structure, Members>...>> = requires {
    Structure{std::declval<Members>()...};
} && !requires { Structure{std::declval<Members>()..., ValueOfAnyType{}}; };

template <class Case>
using CaseTypeOf = Case::Case;
template <class Case>
using PayloadOf = Case::Payload;

/// Whether a tuple of cases names all alternatives of the variant in order, each with its whole payload.
template <class Variant, class Cases>
inline constexpr bool coversAlternatives = false;
template <class Variant, class... Cases>
inline constexpr bool coversAlternatives<Variant, std::tuple<Cases...>> =
    std::same_as<Variant, std::variant<CaseTypeOf<Cases>...>> &&
    (coversMembers<CaseTypeOf<Cases>, PayloadOf<Cases>> && ...);

/// Whether a description says everything about its type; asserted where values are read and written.
template <class T>
consteval bool isWhole() {
    if constexpr (DescribedByFields<T>) {
        return coversMembers<T, std::remove_const_t<decltype(Description<T>::fields)>>;
    } else if constexpr (DescribedByCases<T>) {
        return coversAlternatives<typename T::Variant, std::remove_const_t<decltype(Description<T>::cases)>>;
    } else if constexpr (DescribedByNames<T>) {
        return hasEnumerators<T, Description<T>::names.size()>();
    } else {
        return hasEnumerators<T, Description<T>::numbers.size()>();
    }
}

}  // namespace quillo
