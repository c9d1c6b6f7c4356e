// SPDX-License-Identifier: GPL-3.0-or-later
// make-demo OUT.mid: writes the demo's MIDI file, over an older one if there is one.
#include <cstdlib>
#include <exception>
#include <iostream>

#include "midifile/MIDIFile.hpp"
#include "platform/AtomicFile.hpp"
#include "platform/QuotedText.hpp"
#include "presets/DemoSong.hpp"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "Usage: make-demo OUT.mid\n";
        return EXIT_FAILURE;
    }
    try {
        quillo::writeWholeFile(argv[1], quillo::writeMIDIFile(quillo::demoSong()), quillo::Existing::replace);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << quillo::escapedLines(error.what()) << '\n';
        return EXIT_FAILURE;
    }
}
