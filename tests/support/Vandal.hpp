// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>

namespace quillo::test {

/// Damages a text at random, the same way for the same seed.
class Vandal {
public:
    explicit Vandal(unsigned seed) : random_(seed) {}

    void damage(std::string& text) {
        switch (below(5)) {
        case 0: text[below(text.size())] = static_cast<char>(below(256)); break;
        case 1: text.resize(below(text.size())); break;
        case 2: text.insert(below(text.size()), snippets[below(snippets.size())]); break;
        case 3: text.erase(below(text.size()), 1 + below(20)); break;
        default: copyPart(text); break;
        }
        text += text.empty() ? " " : "";
    }

private:
    static constexpr std::array<std::string_view, 12> snippets{"{}",
                                                               "[]",
                                                               "null",
                                                               "-1",
                                                               "256",
                                                               "1e2",
                                                               "0.5",
                                                               "\"",
                                                               "{\"Value\":{\"_0\":1}}",
                                                               "9223372036854775808",
                                                               "\xF0\x9F",
                                                               "\"_0\":"};

    std::size_t below(std::size_t limit) { return random_() % limit; }

    void copyPart(std::string& text) {
        const auto part = text.substr(below(text.size()), below(40));
        text.insert(below(text.size()), part);
    }

    std::mt19937 random_;
};

}  // namespace quillo::test
