#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
# render-all.py MIDI-QUILLO FOLDER: renders every MIDI file below FOLDER through a preset without rules and
# holds the result to the source by a reader of its own: each message and each meta event at its tick, in its
# order. Then plays each to `diff` with that preset twice. Files for it are in Debian's packages
# openttd-openmsx, simutrans-data, mma, pianobooster, planetblupi-music-midi, and in the WAD files of freedoom
# and freedm.
import collections
import pathlib
import subprocess
import sys
import tempfile

LENGTHS = {8: 2, 9: 2, 10: 2, 11: 2, 12: 1, 13: 1, 14: 2}


def number(data, at):
    value = 0
    while True:
        byte = data[at]
        at += 1
        value = value << 7 | byte & 0x7F
        if byte < 0x80:
            return value, at


def track_events(data):
    """The events of a track as (tick, bytes); meta events begin with ff, system exclusive with f0 or f7."""
    events, at, tick, status = [], 0, 0, 0
    while at < len(data):
        delta, at = number(data, at)
        tick += delta
        if data[at] >= 0xF0:
            start = at
            length, at = number(data, at + (2 if data[at] == 0xFF else 1))
            kind = data[start:start + 2] if data[start] == 0xFF else data[start:start + 1]
            events.append((tick, kind + data[at:at + length]))
            at += length
            if kind == b"\xff\x2f":
                break
        else:
            if data[at] >= 0x80:
                status, at = data[at], at + 1
            length = LENGTHS[status >> 4]
            events.append((tick, bytes([status]) + data[at:at + length]))
            at += length
    return events


def merged_events(data):
    """All tracks in order of ticks, without ends of tracks; the format and the last end."""
    data = data[data.index(b"MThd"):]
    at, tracks = 8 + int.from_bytes(data[4:8], "big"), []
    while len(tracks) < int.from_bytes(data[10:12], "big"):
        length = int.from_bytes(data[at + 4:at + 8], "big")
        if data[at:at + 4] == b"MTrk":
            tracks.append(track_events(data[at + 8:at + 8 + length]))
        at += 8 + length
    events = sorted((event for track in tracks for event in track), key=lambda event: event[0])
    end = max((tick for tick, _ in events), default=0)
    return [event for event in events if not event[1].startswith(b"\xff\x2f")], end


def parts(events):
    """Messages, meta events, and what rules never see."""
    kinds = {0xFF: "meta events", 0xF0: "SysEx", 0xF7: "SysEx"}
    found = collections.defaultdict(list)
    for event in events:
        found[kinds.get(event[1][0], "messages")].append(event)
    return found


def main(program, folder):
    counts = collections.Counter()
    with tempfile.TemporaryDirectory() as work:
        preset, out = pathlib.Path(work, "empty.json"), pathlib.Path(work, "out.mid")
        preset.write_text('{"rules":[]}')
        for path in sorted(pathlib.Path(folder).rglob("*")):
            if not path.is_file() or path.suffix.lower() not in (".mid", ".midi", ".rmi", ".kar"):
                continue
            counts["files"] += 1
            command = [program, "render", path, out, "--preset", preset, "--force"]
            ran = subprocess.run(command, capture_output=True)
            if ran.returncode != 0:
                counts["not read"] += 1
                print(path, ran.stderr.decode().strip())
                continue
            source, end = merged_events(path.read_bytes())
            result, new_end = merged_events(out.read_bytes())
            wanted, got = parts(source), parts(result)
            for kind in ("messages", "meta events", "SysEx"):
                counts[kind] += len(wanted[kind])
            same = all(wanted[kind] == got[kind] for kind in ("messages", "meta events"))
            if not same or end != new_end:
                counts["different"] += 1
                print(path, "is different")
            ran = subprocess.run([program, "diff", preset, preset, "--with", path], capture_output=True)
            counts["different to diff"] += ran.returncode != 0
    print(", ".join(f"{count} {what}" for what, count in counts.items()))
    return counts["different"] + counts["different to diff"] > 0


sys.exit(main(*sys.argv[1:]))
