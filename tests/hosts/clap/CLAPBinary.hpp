// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hosts/clap/CLAPHeaders.hpp"

namespace quillo::test {

/// The binary that was built, loaded as a host loads it: the entry is all that a test has of it.
class CLAPBinary {
public:
    /// Loads it, and calls the entry's `init`. Throws when it cannot be loaded.
    CLAPBinary();
    ~CLAPBinary();
    CLAPBinary(const CLAPBinary&) = delete;
    CLAPBinary& operator=(const CLAPBinary&) = delete;

    [[nodiscard]] const clap_plugin_entry_t& entry() const { return *entry_; }
    [[nodiscard]] const clap_plugin_factory_t& factory() const;

private:
    void* library_;
    const clap_plugin_entry_t* entry_;
};

/// What the factory of the binary calls its plug-in.
inline constexpr const char* clapId = "midi-quillo.midi-quillo";

}  // namespace quillo::test
