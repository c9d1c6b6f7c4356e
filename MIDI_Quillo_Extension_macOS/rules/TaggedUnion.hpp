// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <concepts>
#include <type_traits>
#include <utility>
#include <variant>

#include "platform/RealTime.hpp"

namespace quillo {

/// A value that is exactly one of its cases, in the declared order. The rule types derive from it together
/// with a structure that declares the cases, so that a case reads like its name:
///
///     TriggerValueV2 value = TriggerValueV2::Value{60};
///     if (const auto* exact = value.getIf<TriggerValueV2::Value>()) { use(exact->value); }
template <class... Cases>
class TaggedUnion {
public:
    using Variant = std::variant<Cases...>;

    template <class Case>
        requires(std::same_as<std::remove_cvref_t<Case>, Cases> || ...)
    TaggedUnion(Case&& value) : variant_(std::forward<Case>(value)) {}

    /// The case's payload, or null when the value is another case.
    template <class Case>
    [[nodiscard]] const Case* getIf() const QUILLO_REALTIME {
        return std::get_if<Case>(&variant_);
    }

    template <class Case>
    [[nodiscard]] bool is() const QUILLO_REALTIME {
        return std::holds_alternative<Case>(variant_);
    }

    /// For visits of all cases, off the render thread.
    [[nodiscard]] const Variant& variant() const { return variant_; }

    bool operator==(const TaggedUnion&) const = default;

private:
    Variant variant_;
};

/// One function for each case of a union: `std::visit(Overloaded{...}, value.variant())` covers them all, or
/// does not compile.
template <class... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

}  // namespace quillo
