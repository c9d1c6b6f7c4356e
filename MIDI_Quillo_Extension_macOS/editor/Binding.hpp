// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>

namespace quillo {

/// Where in an entry a field lies, in bytes: no two fields lie at the same place.
using FieldPlace = std::size_t;

/// A value that lives elsewhere, usually in a model: a view reads it when it draws and writes it when the
/// user changes it, and keeps no copy of its own. A change is either one that the user has confirmed, or one
/// small step of several that may follow each other, as when a wheel is turned; a step says in which field of
/// the value it was made. Copies share what leads to the value, however deep in a model it lies. [main] only.
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
        : ways_(std::make_shared<const Ways>(std::move(get), std::move(set), std::move(step))) {}

    [[nodiscard]] Value get() const { return ways_->get(); }
    void set(Value value) const { ways_->set(std::move(value)); }
    /// `field` is 0 where the whole value is the field.
    void step(Value value, FieldPlace field = 0) const {
        ways_->step ? ways_->step(std::move(value), field) : set(std::move(value));
    }

private:
    struct Ways {
        Getter get;
        Setter set;
        Stepper step;
    };

    std::shared_ptr<const Ways> ways_;
};

}  // namespace quillo
