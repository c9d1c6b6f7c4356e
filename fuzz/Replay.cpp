// SPDX-License-Identifier: GPL-3.0-or-later
// The place of libFuzzer in trees that do not fuzz: puts each file of the named folders to the target, once.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "FuzzInput.hpp"

int main(int count, char** arguments) {
    std::size_t files = 0;
    for (int i = 1; i < count; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(arguments[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            const quillo::fuzz::Bytes bytes{std::istreambuf_iterator<char>(file), {}};
            std::printf("%s\n", entry.path().c_str());
            std::fflush(stdout);
            LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
            ++files;
        }
    }
    return files > 0 ? 0 : 1;
}
