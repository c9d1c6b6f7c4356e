// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/HelpText.hpp"

#include <algorithm>
#include <array>

namespace quillo {

namespace {

struct VerbText {
    std::string_view verb;
    std::string_view usage;
    std::string_view help;
};

constexpr std::string_view programUsage = "Usage: midi-quillo VERB [ARGUMENTS]\n";

constexpr std::string_view programHelp = R"(
MIDI Quillo rewrites a stream of MIDI events by an ordered list of rules. The
rules come from a preset: a JSON file that the editor exports.

Verbs:
  render   send a MIDI file through a preset, into another MIDI file
  check    say in plain words what a preset does, or what is wrong with it
  explain  say why an event fired a rule or did not, and what became of it
  diff     say what two presets make different of a recording
  test     play presets the tests that lie beside them
  presets  list the presets that come with the program, or write one out
  schema   print a JSON Schema of presets, for programs that make them
  import   make a preset of another tool's rules
  host     play a host application from a script, to see what a project did
  help     this text; help VERB tells all about a verb

Options:
  --help     this text; after a verb, all about that verb
  --version  the program's version

Example: hear what a preset makes of a song, and see every event on its way.
  midi-quillo render song.mid out.mid --preset echo.json --trace

Exit status: 0 all went well; 1 check found a bad preset or, being strict, a
mistake, diff or test a difference; 2 what diff or test plays cannot be read,
or a test cannot be recorded; 64 wrong arguments; 65 damaged input; 66 input
cannot be read; 70 fatal error; 73 output cannot be written or is there
already.
)";

constexpr std::array verbTexts{
    VerbText{"render", "Usage: midi-quillo render IN.mid OUT.mid --preset PRESET.json [OPTIONS]\n", R"(
Plays the MIDI file IN.mid through the rules of PRESET.json and writes what
comes out to OUT.mid, as one track. Tempo, metre, key, names and markers stay
where they are, so that the result lines up with the original in a sequencer.
The host's transport runs from the file's beginning to its end and then stops;
rules that wait for it fire. System-exclusive events of IN.mid are left out:
rules never see them. It says how many these are, and how many delayed outputs
were dropped because more than 10,000 waited, or were due after the tail. The
tracks of a file of format 2 are played one after the other. IN.mid may be
wrapped in a RIFF file (.rmi). "-" is standard input for IN.mid or PRESET.json,
and standard output for OUT.mid; what is said then goes to standard error.

Options:
  --preset PRESET.json  the rules
  --force               replace OUT.mid if it is there
  --trace               print every event that comes in and goes out, with its
                        time in samples; not together with --json
  --json                say how it went in one line of JSON, for scripts; not
                        together with --trace
  --sample-rate RATE    samples per second that times are counted in, 1000 to
                        768000 (48000). A tick that lasts a sample or longer
                        comes out as the same tick; where a file's ticks are
                        finer, events can move to a neighbouring tick, and a
                        higher rate helps
  --block FRAMES        samples per render cycle, 1 to 1048576 (512); the result
                        does not depend on it, unless outputs are dropped
                        because more than 10,000 wait
  --tail SECONDS        how long to wait for delayed outputs after the end of
                        the file, 0 to 86400 (60)
  --force-size          read IN.mid and PRESET.json above 64 MiB, too

Examples:
  midi-quillo render song.mid out.mid --preset echo.json
  midi-quillo render song.mid out.mid --preset=echo.json --force --tail=2.5
  midi-quillo render - - --preset echo.json <song.mid >out.mid
)"},
    VerbText{"check",
             "Usage: midi-quillo check PRESET.json [--unfold] [--json]\n"
             "                         [--advice [--strict] [--for vst3]]\n"
             "                         [--write OUT.json [--force]]\n",
             R"(
Says what PRESET.json is, a preset of any generation, and what its rules do,
one rule a line. Rules that differ in nothing but the value that they wait for,
which rises from rule to rule, are one line: "notes C1 to B1, 12 rules".
Channels are counted from 1; everything else is the number in the MIDI message.
Under a rule that the editor cannot show, or not as it is, it says so. Rules
that are switched off come last, each with its place among the others. If the
preset is damaged, or no program could run a rule of it, says what is wrong and
where, ends with 1 and writes nothing. "-" is standard input for PRESET.json,
and standard output for OUT.json; what is said then goes to standard error.

Options:
  --advice          say as well which rules can never fire, which swallow all
                    MIDI, which leave notes sounding, and what else may be a
                    mistake, each with a way out; the exit status stays 0
  --strict          with --advice: end with 1 when there is any
  --for vst3        with --advice: say as well what goes for VST3 alone
  --json            say it in one line of JSON, for scripts
  --unfold          one rule a line, also where they differ in a value only
  --write OUT.json  store the preset in the current form
  --force           replace OUT.json if it is there
  --force-size      read PRESET.json above 64 MiB, too

Examples:
  midi-quillo check old.json
  midi-quillo check --advice --for vst3 stage.json
  midi-quillo check old.json --write new.json
)"},
    VerbText{"explain", "Usage: midi-quillo explain --preset PRESET.json [--json] EVENT...\n", R"(
Says what the rules of PRESET.json make of an event. Each rule is asked in
order, and its line says whether it fired, what it sent and when, or the first
thing about the event that it does not wait for. A rule that is switched off is
not asked, and has no number. A rule's policy can consume the event there; the
rules after it are then not reached, and a MIDI message is swallowed instead of
forwarded. That goes for rules of the other kind too: a rule for the host's
transport matches no MIDI, so that "Consume non-matching" makes it swallow all
of it.

An EVENT is one of:
  "90 3c 64"  a MIDI message, its bytes in hexadecimal; 903c64 will do, too
  "host start", "host continue", "host stop"
              a change of the host's transport
  load        the plug-in is loaded
Each event is explained by itself, as if none had come before it.

Options:
  --preset PRESET.json  the rules; "-" is standard input
  --json                say it in one line of JSON, for scripts
  --force-size          read PRESET.json above 64 MiB, too

Examples:
  midi-quillo explain --preset echo.json "b0 40 7f" fa "host start" load
  midi-quillo explain --preset stage.json "90 3c 64"

The second asks why middle C is silent, and is answered:
  90 3c 64: note-on 60 (C3), velocity 100, channel 1
    1  "Reset"  consumed it  it waits for the host's transport to stop, this is
                             a Note On
                             Consume non-matching: a rule for the host's
                             transport matches no MIDI, so it swallows all of
                             it
    2  "Echo"   not reached  rule 1 "Reset" consumed it
  Result: swallowed by rule 1 "Reset" (Consume non-matching). Nothing goes
  out.
)"},
    VerbText{"diff", "Usage: midi-quillo diff A.json B.json --with TAKE.mid [--json]\n", R"(
Plays the MIDI file TAKE.mid through both presets and says what the second
makes different: before a concert, see what an edit has changed. Loading, the
start of the host's transport, the events of the file and the transport's stop
are put to both. For the first event that is answered differently it says what
each rule did and why, in the words of explain. Then come all such events with
what each preset sends, side by side, and how much more or less often each rule
fires. Rules are the same in both when they are equal, or have the same name.

Options:
  --with TAKE.mid  the recording
  --json           say it in one line of JSON, for scripts
  --force-size     read presets and TAKE.mid above 64 MiB, too

The exit status is 0 when nothing is different, 1 when something is, and 2 when
a file cannot be read.

Example:
  midi-quillo diff stage.json new.json --with rehearsal.mid
)"},
    VerbText{"test",
             "Usage: midi-quillo test PRESET.json... [--json]\n"
             "       midi-quillo test PRESET.json --record TAKE.mid [--force]\n",
             R"(
Plays each preset the test that lies beside it, PRESET.test, and says where
something else leaves than the test expects: too much, too little, another
message, or another time. A test is a text:
  # Each note has an echo of its own length.
  on load → at 0 ms: b1 07 46
  at 100 ms: 90 3c 64 → at 100 ms: 90 3c 64, at 400 ms: 91 3c 64
  at 150 ms: 80 3c 40
      → at 150 ms: 80 3c 40
      → at 450 ms: 81 3c 40
  at 500 ms: transport stop → nothing
Before the arrow stands what comes in: "on load", or at its time a MIDI message
in hexadecimal, "transport start", "transport continue" or "transport stop" of
the host; behind it what leaves, parted by commas. A line that begins with an
arrow goes on with what leaves. Times are whole milliseconds from the
beginning. An event that goes on to the output leaves like any other message.
Everything that leaves has to be expected, in the order in which it leaves;
"nothing" and a line without an arrow expect nothing more. "->" is an arrow as
well. Lines that begin with # are remarks.

Options:
  --record TAKE.mid  write PRESET.test: the events of a MIDI file, and what the
                     preset makes of them now; the host's transport runs from
                     its beginning to its end
  --force            replace PRESET.test if it is there
  --json             say it in one line of JSON, for scripts
  --force-size       read presets, tests and TAKE.mid above 64 MiB, too

The exit status is 0 when every test passed, 1 when something is different, and
2 when a file cannot be read, or the test cannot be recorded.

Examples:
  midi-quillo test presets/echo.json
  midi-quillo test presets/*.json --json
  midi-quillo test stage.json --record rehearsal.mid
)"},
    VerbText{"presets", "Usage: midi-quillo presets [NAME [--write OUT.json [--force]]]\n", R"(
Lists the presets that come with the program by what they are for, each with a
sentence. With a NAME of this list, prints that preset, or writes it to a file.
The editor imports them from "Examples" among its import's folders.

Options:
  --write OUT.json  write the preset to this file; "-" is standard output
  --force           replace OUT.json if it is there

Examples:
  midi-quillo presets
  midi-quillo presets bass-split --write stage.json
)"},
    VerbText{"schema", "Usage: midi-quillo schema\n", R"(
Prints a JSON Schema (draft 2020-12) of presets in all their forms, for editors
and programs that make or check them. The package midi-quillo-doc installs it as
well, as /usr/share/midi-quillo/preset.schema.json. What it cannot say, check
says.

Example:
  midi-quillo schema >preset.schema.json
)"},
    VerbText{"import", "Usage: midi-quillo import FILE [-o PRESET.json [--force]] [--drop-unmatched]\n", R"(
Reads the rules of another tool from FILE: a configuration of midimap.lv2, or a
.bmtp project. Says of each line which rules it becomes, what of it is lost and
why, or why it is left out. A line for several kinds of messages becomes several
rules, and so does one that calculates with a byte. A translator that is not
active becomes a rule that is switched off.

Options:
  -o PRESET.json    write the rules there; "-" is standard output, what is said
                    then goes to standard error
  --force           replace PRESET.json if it is there
  --drop-unmatched  of a .bmtp project: drop what no translator waits for, which
                    passes otherwise; a configuration of midimap.lv2 says itself
                    what becomes of it
  --force-size      read FILE above 64 MiB, too

Examples:
  midi-quillo import pads.cfg
  midi-quillo import stage.bmtp -o stage.json
)"},
    VerbText{"host", "Usage: midi-quillo host [SCRIPT]\n", R"(
Plays a host application from SCRIPT, or from standard input. The script has
one JSON object a line. Its key "do" names the action:
  create      drop the unit and make a new one
  restore     set the saved state, by one key: "state" has the document as text
              (null: no state at all), "base64" its bytes; "dictionary" is an
              object of any values without a document, a fatal error
  save        read the saved state
  allocate    get ready to render: "sampleRate" (44100), "inputChannels" (2),
              "outputChannels" (2)
  deallocate  the opposite
  install     install "rules", a list as in a preset, as the editor does
  send        send "output", as the editor does: what a rule of a preset has
              under "message"
  transport   from now on report "flags", the sum of 2 for moving, 4 for
              recording and 8 for looping, and "position" in samples;
              "present": false reports nothing
  output      "present": false takes no MIDI, true does again; "failAfter" and
              "status" take so many messages more, then answer this status once
  render      one cycle: from "sampleTime" on so many "frames", with a list of
              "events"
  describe    what the unit declares
  views       which of the view "sizes" the editor takes; each is a list of
              width and height
  queue       how many delayed outputs wait

An event has its "time" in samples and its "type": 8 is MIDI and need not be
said, 9 system exclusive, 1 and 2 are parameters. Both kinds of MIDI have
"bytes", a list of numbers; of up to three bytes of MIDI "length" can say how
many count.

Each action answers with one JSON object a line, after the events it caused:
"in" and "out" are what the logs show, "midi" is what the host was sent, and
"refused" what it did not take.

Examples:
  midi-quillo host session.jsonl
  echo '{"do":"describe"}' | midi-quillo host

A script that starts the transport and hands over MIDI Start four samples later:
  {"do":"allocate","sampleRate":48000}
  {"do":"transport","flags":2,"position":0}
  {"do":"render","sampleTime":0,"frames":64,"events":[{"time":4,"bytes":[250]}]}
)"},
};

const VerbText* textOf(std::string_view verb) {
    const auto* found = std::ranges::find(verbTexts, verb, &VerbText::verb);
    return found == verbTexts.end() ? nullptr : found;
}

}  // namespace

std::string_view generalHelp() {
    return programHelp.substr(1);
}

std::string_view usageOf(std::string_view verb) {
    const auto* text = textOf(verb);
    return text == nullptr ? programUsage : text->usage;
}

std::optional<std::string_view> helpFor(std::string_view verb) {
    const auto* text = textOf(verb);
    return text == nullptr ? std::nullopt : std::optional(text->help.substr(1));
}

}  // namespace quillo
