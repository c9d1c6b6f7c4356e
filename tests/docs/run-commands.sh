#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# run-commands.sh PROGRAMS PAGE.md...: runs every `sh` block of these pages as a reader would, one after the other in one
# folder that has the files that the pages speak of: what one block has made is there for the next. PROGRAMS is the
# folder with the built programs. Blocks of another language are for reading only.
#
# Two commands are stood in for, because they build, open a window or need a sound server: ./dev must know the verb,
# and midi-quillo-jack every option, by what they say of themselves.
set -euo pipefail

programs=$(realpath "$1")
shift
source=$(realpath "$(dirname "$0")/../..")
desk=$(mktemp -d)
trap 'rm -rf "$desk"' EXIT

lay_out_desk() {
    mkdir "$desk/bin" "$desk/build"
    cp -r "$source/presets" "$desk/presets"
    cp "$source/presets/demo.mid" "$desk/song.mid"
    cp "$source/presets/demo.mid" "$desk/IN.mid"
    cp "$source/presets/demo.json" "$desk/mypreset.json"
    cp "$source/presets/demo.json" "$desk/P.json"
    echo '{"do":"allocate","sampleRate":48000}' >"$desk/SCRIPT"
    ln -s "$programs/midi-quillo" "$desk/bin/midi-quillo"
    ln -s "$programs/midi-quillo" "$desk/build/midi-quillo"
    stand_in_for_dev
    stand_in_for_jack
}

stand_in_for_dev() {
    cat >"$desk/dev" <<END
#!/usr/bin/env bash
[[ \$# == 0 ]] || "$source/dev" help | grep -q "^  \$1\\b" || { echo "./dev has no verb \$1" >&2; exit 64; }
END
    chmod +x "$desk/dev"
}

stand_in_for_jack() {
    cat >"$desk/bin/midi-quillo-jack" <<END
#!/usr/bin/env bash
for word in "\$@"; do
    [[ \$word != --* ]] || "$programs/midi-quillo-jack" --help | grep -q -e "\$word" ||
        { echo "midi-quillo-jack has no option \$word" >&2; exit 64; }
done
END
    chmod +x "$desk/bin/midi-quillo-jack"
}

# block PAGE N: the page's Nth `sh` block; nothing when it has fewer.
block() {
    awk -v wanted="$2" '/^```/ { if (inside) { inside = 0 } else if ($0 == "```sh") { inside = 1; ++n; next } }
        inside && n == wanted' "$1"
}

# try PAGE N COMMANDS: runs them; on failure shows them and what they said.
try() {
    if (cd "$desk" && PATH=$desk/bin:$PATH bash -euo pipefail -c "$3") \
        >"$desk/output" 2>&1 </dev/null; then
        return
    fi
    printf '%s, block %d:\n%s\n--- said\n' "$1" "$2" "$3"
    cat "$desk/output"
    return 1
}

lay_out_desk
failed=0
ran=0
for page in "$@"; do
    page=$(realpath "$page")
    for ((n = 1; ; ++n)); do
        commands=$(block "$page" "$n")
        [[ -n $commands ]] || break
        ran=$((ran + 1))
        try "$page" "$n" "$commands" || failed=$((failed + 1))
    done
done
echo "$ran blocks, $failed failed"
((ran > 0 && failed == 0))
