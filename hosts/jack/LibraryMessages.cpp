// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/LibraryMessages.hpp"

#include <jack/jack.h>

#include <mutex>
#include <optional>
#include <vector>

#include "hosts/jack/WithoutCancellation.hpp"

namespace quillo {

namespace {

/// The library speaks from any of its threads.
struct Kept {
    std::mutex mutex;
    std::optional<std::vector<std::string>> messages;
};

Kept& kept() {
    static Kept instance;
    return instance;
}

void keep(const char* message) {
    constexpr std::size_t mostMessages = 100;
    withoutCancellation([&] {
        const std::lock_guard lock(kept().mutex);
        if (kept().messages && kept().messages->size() < mostMessages) {
            kept().messages->emplace_back(message);
        }
    });
}

}  // namespace

void LibraryMessages::silenceLibrary() {
    ::jack_set_error_function(&keep);
    ::jack_set_info_function(&keep);
}

LibraryMessages::LibraryMessages() {
    silenceLibrary();
    const std::lock_guard lock(kept().mutex);
    kept().messages.emplace();
}

LibraryMessages::~LibraryMessages() {
    const std::lock_guard lock(kept().mutex);
    kept().messages.reset();
}

std::string LibraryMessages::lines(const std::string& indent) const {
    const std::lock_guard lock(kept().mutex);
    std::string text;
    for (const auto& message : kept().messages.value()) {
        text += indent + message + '\n';
    }
    return text;
}

}  // namespace quillo
