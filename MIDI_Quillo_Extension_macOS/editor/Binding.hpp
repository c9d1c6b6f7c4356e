// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <utility>

namespace quillo {

/// A value that lives elsewhere, usually in a model: a view reads it when it draws and writes it when the
/// user changes it, and keeps no copy of its own. A change is either one that the user has confirmed, or one
/// small step of several that may follow each other, as when a wheel is turned. [main] only.
///
///     Binding<int> delay([&] { return entry.delay; }, [&](int ms) { edit(ms); });
template <class Value>
class Binding {
public:
    using Getter = std::function<Value()>;
    using Setter = std::function<void(Value value)>;

    /// Without `step` a step is a change like any other.
    Binding(Getter get, Setter set, Setter step = {})
        : get_(std::move(get)), set_(std::move(set)), step_(step ? std::move(step) : set_) {}

    [[nodiscard]] Value get() const { return get_(); }
    void set(Value value) const { set_(std::move(value)); }
    void step(Value value) const { step_(std::move(value)); }

private:
    Getter get_;
    Setter set_;
    Setter step_;
};

}  // namespace quillo
