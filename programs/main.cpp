// SPDX-License-Identifier: GPL-3.0-or-later
#include <unistd.h>

#include <iostream>
#include <string>
#include <vector>

#include "programs/CommandLine.hpp"

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    const std::vector<std::string> words(argv + (argc > 0 ? 1 : 0), argv + argc);
    const quillo::Console console{std::cin, std::cout, std::cerr, ::isatty(STDERR_FILENO) == 1};
    return quillo::runCommandLine(words, console);
}
