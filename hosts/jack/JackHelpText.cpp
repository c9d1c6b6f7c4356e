// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/JackHelpText.hpp"

namespace quillo {

namespace {

constexpr std::string_view usage = "Usage: midi-quillo-jack [OPTIONS]\n";

constexpr std::string_view help = R"(
MIDI Quillo on its own: a JACK client with one MIDI input ("in") and one MIDI
output ("MIDIQuillo"), between which the rules work. JACK's transport is the
transport that rules wait for. You edit the rules in the program's window.

Rules:
  --preset PRESET.json   take the rules of this preset; without it, those of the
                         last session come back
  --history              list the versions of the session's rules, and end
  --go-back N            take the rules of N versions ago, 1 to 9

Every change is kept in ~/.local/state/midi-quillo/NAME.json within a second or
two, and the nine versions before it stay beside it; changes within a minute
are one version. Each of these files is a preset. A preset file itself is
never changed: export the rules for that.

Connections:
  --connect-in PATTERN   connect every port that matches to the input, now and
                         whenever it appears; may be given several times
  --connect-out PATTERN  the same for ports that the output is sent to
  PATTERN is a regular expression that matches anywhere in a port's full name
  or alias; jack_lsp -A lists these. Connections made by hand are remembered and
  come back, too. On Load messages reach the ports connected either way.

JACK:
  --server NAME          the server (that of JACK_DEFAULT_SERVER, or "default")
  --start-server         start the server if it is not running, as ~/.jackdrc
                         says
  --wait                 wait for a server if none is running; with a window the
                         program always does
  --name NAME            the client's name, and the session's (midi-quillo)

When the server ends, the program waits for it; rules and connections stay. A
second program gets another name from JACK, and has a session of its own.

Panic:
  --panic-message BYTES  a MIDI message that ends all notes, in hexadecimal: the
                         whole of it, or how it begins ('b0 50 7f', '9f 24'); no
                         rule hears it, and it does not pass
  SIGUSR2 does the same, and so does the button in the window: all notes that
  went out end, pedals are let go of, what waits is discarded.

Other:
  --no-window            run without a window; no display is needed
  --scale N              draw the window N times as large, 0.5 to 4; without it,
                         as GDK_SCALE, Xft.dpi or the screen's resolution says
  --log                  print every event that comes in and goes out, with its
                         time in samples
  --help, --version      this text; the program's version

SIGHUP reads the file of --preset again; On Load rules do not fire again.
SIGINT and SIGTERM end the program. Either way the notes that went out end
first. SIGUSR1 saves the rules and the connections at once.

A session manager (NSM) that starts the program says what is opened and saved.

Examples:
  midi-quillo-jack
  midi-quillo-jack --connect-in 'Stage Piano' --connect-out 'fluidsynth'
  midi-quillo-jack --no-window --wait --preset stage.json
  midi-quillo-jack --go-back 1
  pw-jack midi-quillo-jack

Exit status: 0 all went well; 64 wrong arguments; 65 damaged preset or version
to go back to; 66 one of these cannot be read, or neither XDG_STATE_HOME nor
HOME is set for --history or --go-back; 69 no JACK server or no display; 70
fatal error; 73 the rules could not be saved.
)";

}  // namespace

std::string_view jackUsage() {
    return usage;
}

std::string_view jackHelp() {
    return help.substr(1);
}

std::string howToGetAServer() {
    return "\nStart one, for instance with qjackctl or"
           "\n    jackd -d alsa -X seq"
           "\nor let this program do it, as ~/.jackdrc says:"
           "\n    midi-quillo-jack --start-server"
           "\nWhere PipeWire runs, start the program with"
           "\n    pw-jack midi-quillo-jack";
}

}  // namespace quillo
