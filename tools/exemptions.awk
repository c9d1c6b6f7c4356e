# SPDX-License-Identifier: GPL-3.0-or-later
# Lists every use of QUILLO_REALTIME_EXEMPT("reason") as `file:line: reason`, then their number. A use that
# gives no reason within five lines is listed as such and makes the exit status 1.

function report(reason) {
    printf "%s: %s\n", place, reason
    linesLeft = 0
    ++count
}

function refuse() {
    report("NO REASON GIVEN")
    status = 1
}

# Looks for a complete reason, which may be several literals in a row, in what has been read of the use.
function examine() {
    if (match(text, /^[ \t]*("([^"\\]|\\.)*"[ \t]*)+\)/)) {
        reason = substr(text, RSTART, RLENGTH)
        gsub(/^[ \t]*"|"[ \t]*\)$/, "", reason)
        gsub(/"[ \t]+"/, "", reason)
        report(reason)
    } else if (--linesLeft == 0) {
        refuse()
    }
}

FNR == 1 && linesLeft { refuse() }

linesLeft {
    text = text " " $0
    examine()
    next
}

/^[ \t]*(#|\/\/)/ { next }

start = index($0, "QUILLO_REALTIME_EXEMPT(") {
    place = FILENAME ":" FNR
    text = substr($0, start + length("QUILLO_REALTIME_EXEMPT("))
    linesLeft = 5
    examine()
}

END {
    if (linesLeft) {
        refuse()
    }
    printf "%d real-time exemption%s\n", count, count == 1 ? "" : "s"
    exit status
}
