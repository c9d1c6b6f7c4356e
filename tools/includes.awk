# SPDX-License-Identifier: GPL-3.0-or-later
# Names each include that points up or sideways. `rooms` lists our folders, from the bottom up: what stands in
# one may include that one and those below. Each folder of `hosts/` that is not listed stands on top, beside
# the others. Tests may include every room, but of the hosts only their own, and JACK's, under whose server
# other hosts run; benchmarks and fuzz targets may include all.
BEGIN {
    count = split(rooms, name, " ")
    for (i = 1; i <= count; ++i) {
        level[name[i]] = i
    }
}

# The innermost room of a file, or "" for a file that is in none.
function roomOf(path, room) {
    sub(/^MIDI_Quillo_Extension_macOS\//, "", path)
    room = path
    while (sub(/\/[^\/]*$/, "", room)) {
        if (room in level || room ~ /^hosts\/[^\/]+$/) {
            return room
        }
    }
    return ""
}

function heightOf(room) {
    return room in level ? level[room] : count + 1
}

function mayInclude(included) {
    if (included == "" || included == room || included == "hosts/formats") {
        return 1
    }
    return isTest ? included in level || included == "hosts/jack" : heightOf(included) < heightOf(room)
}

FNR == 1 {
    seesAll = FILENAME ~ /^(benchmarks|fuzz)\//
    isTest = FILENAME ~ /^tests\//
    room = roomOf(isTest ? substr(FILENAME, length("tests/") + 1) : FILENAME)
    if (!isTest && !seesAll && room == "") {
        print FILENAME " is in none of the rooms that tools/lint.sh lists"
        failed = 1
    }
}

/^#(include|import) "/ && !seesAll {
    split($0, quoted, "\"")
    included = roomOf(quoted[2])
    if (!mayInclude(included)) {
        print FILENAME ":" FNR ": " included " does not stand below " (isTest ? "these tests" : room)
        failed = 1
    }
}

END {
    exit failed
}
