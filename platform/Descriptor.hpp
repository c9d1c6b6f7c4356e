// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <utility>

namespace quillo {

/// An open file descriptor, closed with its owner. -1 for none.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor();
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }

    [[nodiscard]] int number() const { return number_; }
    [[nodiscard]] bool isOpen() const { return number_ >= 0; }

    /// Closes it now. False, with the reason in `errno`, when what was written may be lost.
    bool close();

private:
    int number_ = -1;
};

}  // namespace quillo
