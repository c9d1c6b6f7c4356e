// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <vector>

/// What each fuzz target is: a function over bytes of any length, which ends the process when something is
/// wrong.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace quillo::fuzz {

using Bytes = std::vector<std::uint8_t>;

/// Ends the process, which the fuzzer counts as a find, unless the promise was kept.
inline void require(bool kept, const char* promise) {
    if (!kept) {
        std::fprintf(stderr, "not kept: %s\n", promise);
        std::abort();
    }
}

/// The fuzzer's bytes, taken from the front. Behind the last one there are only zeros.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : left_(data, size) {}

    [[nodiscard]] bool isEmpty() const { return left_.empty(); }

    /// A number, lowest byte first.
    template <class Number>
    Number number() {
        Number value{};
        const auto piece = left_.first(std::min(sizeof(Number), left_.size()));
        std::memcpy(&value, piece.data(), piece.size());
        left_ = left_.subspan(piece.size());
        return value;
    }

    /// So many bytes, or all that are left, in an allocation of exactly this size: AddressSanitizer sees each
    /// byte that is read or written behind them.
    Bytes bytes(std::size_t count) {
        const auto piece = left_.first(std::min(count, left_.size()));
        left_ = left_.subspan(piece.size());
        return {piece.begin(), piece.end()};
    }

    [[nodiscard]] std::span<const std::uint8_t> rest() const { return left_; }

private:
    std::span<const std::uint8_t> left_;
};

}  // namespace quillo::fuzz
