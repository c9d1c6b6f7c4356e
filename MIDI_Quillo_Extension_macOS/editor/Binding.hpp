// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <utility>

namespace quillo {

/// A value that lives elsewhere, usually in a model: a view reads it when it draws and writes it when the user
/// changes it, and keeps no copy of its own. [main] only.
///
///     Binding<int> delay([&] { return entry.delay; }, [&](int ms) { edit(ms); });
template <class Value>
class Binding {
public:
    using Getter = std::function<Value()>;
    using Setter = std::function<void(Value value)>;

    Binding(Getter get, Setter set) : get_(std::move(get)), set_(std::move(set)) {}

    [[nodiscard]] Value get() const { return get_(); }
    void set(Value value) const { set_(std::move(value)); }

private:
    Getter get_;
    Setter set_;
};

}  // namespace quillo
