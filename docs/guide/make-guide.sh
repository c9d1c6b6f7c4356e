#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# make-guide.sh FOLDER VERSION: joins the chapters beside this script to FOLDER/index.html and
# FOLDER/midi-quillo-guide.7. The pictures are put there by whoever draws them.
set -eu

chapters=$(dirname "$0")
folder=$1
version=$2

joined() {
    for chapter in "$chapters"/[0-9]*.md; do
        cat "$chapter"
        echo
    done
}

# The search, which shows itself where scripts run, and the headings of the body as a list of links.
contents() {
    echo '<nav>'
    echo '<p id="search" hidden><label>Search <input type="search"></label></p>'
    echo '<ul id="found" aria-live="polite"></ul><p id="none" role="status" hidden>Nothing found.</p>'
    echo '<ul id="contents">'
    sed -n 's|^<h[12] id="\([^"]*\)">\(.*\)</h\([12]\)>$|\3 \1 \2|p' "$1" |
        while read -r level id text; do
            if [ "$level" = 1 ]; then
                echo "<li><a href=\"#$id\">$text</a></li>"
            else
                echo "<li><ul><li><a href=\"#$id\">$text</a></li></ul></li>"
            fi
        done
    echo '</ul></nav>'
}

# The manual page set flush left, and its widest table in columns that fit a screen of 80.
fit_screen() {
    sed -e '/^\.TH/a .ad l\n.nh' -e 's/^l l l l\.$/lw(15n) lw(11n) lw(16n) lw(14n)./'
}

mkdir -p "$folder"
body=$(mktemp)
trap 'rm -f "$body"' EXIT
joined | lowdown -Thtml --out-no-smarty >"$body"
{
    cat "$chapters/page-head.html"
    contents "$body"
    echo '<main>'
    cat "$body"
    echo "<p><small>MIDI Quillo $version</small></p>"
    echo '</main>'
    echo '<script>'
    cat "$chapters/search.js"
    echo '</script>'
    echo '</body>'
    echo '</html>'
} >"$folder/index.html"
{
    printf '# Name\n\nmidi-quillo-guide - how to work with MIDI Quillo\n\n'
    joined
} | sed 's|^!\[.*||' |
    lowdown -s -Tman --out-no-smarty --nroff-nolinks -M title=midi-quillo-guide -M section=7 \
        -M source="MIDI Quillo $version" |
    fit_screen >"$folder/midi-quillo-guide.7"
cp "$chapters"/*.svg "$folder/"
