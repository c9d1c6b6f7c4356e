// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <utility>

namespace quillo {

/// Where in an entry a field lies, in bytes: no two fields lie at the same place.
using FieldPlace = std::size_t;

/// A value that lives elsewhere, usually in a model: a view reads it when it draws and writes it when the
/// user changes it, and keeps no copy of its own. A change is either one that the user has confirmed, or one
/// small step of several that may follow each other, as when a wheel is turned; a step says in which field of
/// the value it was made. [main] only.
///
///     Binding<int> delay([&] { return entry.delay; }, [&](int ms) { edit(ms); });
template <class Value>
class Binding {
public:
    using Getter = std::function<Value()>;
    using Setter = std::function<void(Value value)>;
    using Stepper = std::function<void(Value value, FieldPlace field)>;

    /// Without `step` a step is a change like any other.
    Binding(Getter get, Setter set, Stepper step = {})
        : get_(std::move(get)), set_(std::move(set)), step_(std::move(step)) {
        if (!step_) {
            step_ = [set = set_](Value value, FieldPlace) { set(std::move(value)); };
        }
    }

    [[nodiscard]] Value get() const { return get_(); }
    void set(Value value) const { set_(std::move(value)); }
    /// `field` is 0 where the whole value is the field.
    void step(Value value, FieldPlace field = 0) const { step_(std::move(value), field); }

private:
    Getter get_;
    Setter set_;
    Stepper step_;
};

}  // namespace quillo
