// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/RenderRequests.hpp"

namespace quillo {

namespace {

void add(std::string& sentence, const char* verb, std::size_t count, const char* thing) {
    if (count == 0) {
        return;
    }
    sentence += sentence.empty() ? "" : ", ";
    sentence += std::string(verb) + " " + std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

}  // namespace

std::string inWords(const PanicResult& result) {
    std::string sentence;
    add(sentence, "stopped", result.notes, "note");
    add(sentence, "let go of", result.pedals, "pedal");
    add(sentence, "cancelled", result.messages, "waiting message");
    if (sentence.empty()) {
        return "Nothing was sounding";
    }
    sentence.front() = static_cast<char>(sentence.front() - 'a' + 'A');
    return sentence;
}

}  // namespace quillo
