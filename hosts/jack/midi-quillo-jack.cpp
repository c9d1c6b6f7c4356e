// SPDX-License-Identifier: GPL-3.0-or-later
#include <unistd.h>

#include <iostream>
#include <string>
#include <vector>

#include "hosts/jack/JackProgram.hpp"
#ifdef QUILLO_WITH_WINDOW
#include "hosts/jack/JackApplication.hpp"
#endif

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + (argc > 0 ? 1 : 0), argv + argc);
    const quillo::Console console{
        .in = std::cin, .out = std::cout, .err = std::cerr, .outDescriptor = STDOUT_FILENO};
#ifdef QUILLO_WITH_WINDOW
    return quillo::runJackProgram(words, console, &quillo::runWithWindow);
#else
    return quillo::runJackProgram(words, console, nullptr);
#endif
}
