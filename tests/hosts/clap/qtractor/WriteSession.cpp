// SPDX-License-Identifier: GPL-3.0-or-later
// write-session FOLDER PLUGIN PROBE: leaves the session in the folder.
#include <exception>
#include <iostream>

#include "hosts/clap/qtractor/QtractorSession.hpp"

int main(int count, char** arguments) try {
    if (count != 4) {
        std::cerr << "write-session FOLDER PLUGIN PROBE\n";
        return 64;
    }
    quillo::test::writeSession(arguments[1], arguments[2], arguments[3]);
    return 0;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 70;
}
